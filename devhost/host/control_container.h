#pragma once

#include <ole2.h>
#include <windows.h>

#include <memory>
#include <string>

#include "foundation/variant.h"
#include "host/call_log.h"
#include "host/container_site.h"

namespace qv::devhost {

/// Hosts one ActiveX control in a window, in the order that Office keeps. UI thread.
class ControlContainer {
 public:
  /// What was still referenced after everything was let go; zeros when nothing leaked.
  struct Leaks {
    ULONG control = 0;
    ULONG site = 0;
  };

  /// Creates the control by ProgID and activates it in place. The window and the log are borrowed. Throws
  /// std::runtime_error with the call that failed.
  ControlContainer(const std::wstring& progId, HWND window, CallLog& log);
  ControlContainer(const ControlContainer&) = delete;
  ControlContainer& operator=(const ControlContainer&) = delete;
  ~ControlContainer();

  /// The control's automation interface; null when it has none or after `Close`.
  [[nodiscard]] ComPtr<IDispatch> Control() const;
  /// The control's own window; null before it has one.
  [[nodiscard]] HWND ControlWindow() const;

  /// Fits the control to the window's client area.
  void Resize();
  /// Runs a verb (OLEIVERB_…) the way a host does.
  [[nodiscard]] HRESULT DoVerb(LONG verb);
  /// UIDeactivate, InPlaceDeactivate, Close, SetClientSite(null), release. Repeated calls do nothing.
  Leaks Close();

 private:
  void Create(const std::wstring& progId);
  void Prepare();
  [[nodiscard]] RECT ClientArea() const;

  HWND window_;
  CallLog& log_;
  ContainerSite* site_;
  ComPtr<IOleObject> object_;
  ComPtr<IOleInPlaceObject> inPlace_;
};

}  // namespace qv::devhost
