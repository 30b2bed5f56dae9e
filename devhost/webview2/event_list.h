#pragma once

#include <windows.h>

#include <utility>
#include <vector>

#include "foundation/variant.h"
#include "panel/webview2_interfaces.h"

namespace qv::devhost {

/// The handlers of one event, in the order of their registration.
template <typename Handler>
class EventList {
 public:
  [[nodiscard]] HRESULT Add(Handler* handler, EventRegistrationToken* token) {
    if (handler == nullptr || token == nullptr) return E_POINTER;
    token->value = ++lastToken_;
    handlers_.emplace_back(lastToken_, handler);
    return S_OK;
  }

  /// An unknown token is no error.
  void Remove(EventRegistrationToken token) {
    std::erase_if(handlers_, [token](const auto& entry) { return entry.first == token.value; });
  }

  void Clear() { handlers_.clear(); }

  /// Calls every handler; handlers may be added and removed meanwhile.
  template <typename... Arguments>
  void Raise(Arguments... arguments) {
    const auto snapshot = handlers_;
    for (const auto& [token, handler] : snapshot)
      static_cast<void>(handler->Invoke(arguments...));
  }

 private:
  INT64 lastToken_ = 0;
  std::vector<std::pair<INT64, ComPtr<Handler>>> handlers_;
};

}  // namespace qv::devhost
