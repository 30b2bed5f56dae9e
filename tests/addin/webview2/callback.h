#pragma once

#include <functional>
#include <utility>

#include "foundation/com_object.h"
#include "foundation/variant.h"

namespace qv::test {

template <typename Handler, typename Method = decltype(&Handler::Invoke)>
class Callback;

/// A handler interface made of a function.
template <typename Handler, typename... Arguments>
class Callback<Handler, HRESULT (Handler::*)(Arguments...)> final : public ComObject<Handler> {
 public:
  explicit Callback(std::function<void(Arguments...)> body) : body_(std::move(body)) {}

  HRESULT STDMETHODCALLTYPE Invoke(Arguments... arguments) override {
    body_(arguments...);
    return S_OK;
  }

 private:
  std::function<void(Arguments...)> body_;
};

template <typename Handler, typename Body>
[[nodiscard]] ComPtr<Handler> MakeCallback(Body body) {
  return MakeCom<Callback<Handler>>(std::move(body));
}

}  // namespace qv::test
