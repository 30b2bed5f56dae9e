#pragma once

#include <memory>

#include "addin/office_interfaces.h"
#include "engines/common/app_events.h"
#include "foundation/variant.h"
#include "host/host_dispatch.h"
#include "host/pane_frame.h"

namespace qv::devhost {

/// The task-pane object that the factory hands to the add-in, and the source of its events: a pane that is
/// shown, hidden or docked elsewhere, by the add-in or the user, tells its sinks. While it does, its size
/// cannot be set, as in Office. After `Delete` its members fail.
class TaskPane final : public HostDispatch<_CustomTaskPane> {
 public:
  TaskPane(std::shared_ptr<PaneFrame> frame, ComPtr<IDispatch> application, ComPtr<IDispatch> window);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;

  /// The next `times` widths that are asked for become `points` instead, as with a host that lays out its
  /// panes by itself.
  void OverrideWidth(int points, int times) {
    ownWidth_ = points;
    overridesLeft_ = times;
  }

  /// From now on it cannot be shown or hidden, as in a host that is not ready.
  void RefuseToShow() { refusesToShow_ = true; }

  /// Whether the pane keeps its control to itself, as hosts do that make it only when the pane is shown.
  void WithholdControl(bool withhold) { withholdsControl_ = withhold; }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) noexcept override;

  HRESULT STDMETHODCALLTYPE get_Title(BSTR* title) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Application(IDispatch** application) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Window(IDispatch** window) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Visible(VARIANT_BOOL* visible) noexcept override;
  HRESULT STDMETHODCALLTYPE put_Visible(VARIANT_BOOL visible) noexcept override;
  HRESULT STDMETHODCALLTYPE get_ContentControl(IDispatch** control) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Height(int* height) noexcept override;
  HRESULT STDMETHODCALLTYPE put_Height(int height) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Width(int* width) noexcept override;
  HRESULT STDMETHODCALLTYPE put_Width(int width) noexcept override;
  HRESULT STDMETHODCALLTYPE get_DockPosition(MsoCTPDockPosition* position) noexcept override;
  HRESULT STDMETHODCALLTYPE put_DockPosition(MsoCTPDockPosition position) noexcept override;
  HRESULT STDMETHODCALLTYPE get_DockPositionRestrict(MsoCTPDockPositionRestrict* restrict) noexcept override;
  HRESULT STDMETHODCALLTYPE put_DockPositionRestrict(MsoCTPDockPositionRestrict restrict) noexcept override;
  HRESULT STDMETHODCALLTYPE Delete() noexcept override;

 private:
  ~TaskPane() override;
  void Fire(DISPID event);
  [[nodiscard]] std::span<const DispatchName> Names() const noexcept override;
  [[nodiscard]] HRESULT Get(DISPID id, VARIANT& value);
  [[nodiscard]] HRESULT Put(DISPID id, const VARIANT& value);

  std::shared_ptr<PaneFrame> frame_;
  ComPtr<IDispatch> application_;
  ComPtr<IDispatch> window_;
  MsoCTPDockPositionRestrict dockRestrict_ = msoCTPDockPositionRestrictNone;
  AppEvents events_;
  bool isFiring_ = false;
  int ownWidth_ = 0;
  int overridesLeft_ = 0;
  bool withholdsControl_ = false;
  bool refusesToShow_ = false;
};

}  // namespace qv::devhost
