#pragma once

#include <oaidl.h>
#include <ocidl.h>

#include <functional>
#include <memory>

#include "foundation/com_object.h"
#include "foundation/variant.h"

/// Event interface of the host's Application object, a pure dispinterface.
struct IExcelAppEvents : public IDispatch {};
__CRT_UUID_DECL(IExcelAppEvents, 0x00024413, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)

namespace qv {

template <>
struct ComBaseOf<IExcelAppEvents> {
  using Type = IDispatch;
};

enum class HostEventKind { kSelectionChanged, kSheetActivated, kSheetChanged, kWindowActivated };

/// One event of the host.
struct HostEvent {
  HostEventKind kind;
  /// The sheet it is about; null for window events or when the host did not say.
  ComPtr<IDispatch> sheet;
};

/// Listens to the host's application events while it lives. Host UI thread.
class AppEvents {
 public:
  using Listener = std::function<void(const HostEvent&)>;

  AppEvents() = default;
  AppEvents(const AppEvents&) = delete;
  AppEvents& operator=(const AppEvents&) = delete;
  ~AppEvents() { Unsubscribe(); }

  /// Starts listening. A failure is normal where a host offers no events.
  [[nodiscard]] HRESULT Subscribe(IDispatch* application, Listener listener);
  /// Stops; no event arrives afterwards, even when the host keeps its reference.
  void Unsubscribe();

 private:
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
  std::shared_ptr<Listener> listener_;
};

}  // namespace qv
