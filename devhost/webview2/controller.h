#pragma once

#include <memory>

#include "webview2/controller_stubs.h"
#include "webview2/core_web_view.h"
#include "webview2/view_window.h"

namespace qv::devhost {

/// The window side of one web view. The last release closes it like `Close`.
class Controller final : public ControllerStubs {
 public:
  /// Takes the child window over and puts the page into it.
  Controller(std::shared_ptr<CompletionQueue> queue, HWND parent, std::unique_ptr<ViewWindow> window,
             const BindPage& bind, std::wstring userDataFolder);

  HRESULT STDMETHODCALLTYPE get_IsVisible(BOOL* value) noexcept override;
  HRESULT STDMETHODCALLTYPE put_IsVisible(BOOL value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Bounds(RECT* bounds) noexcept override;
  HRESULT STDMETHODCALLTYPE put_Bounds(RECT bounds) noexcept override;
  HRESULT STDMETHODCALLTYPE get_ZoomFactor(double* value) noexcept override;
  HRESULT STDMETHODCALLTYPE put_ZoomFactor(double value) noexcept override;
  HRESULT STDMETHODCALLTYPE SetBoundsAndZoomFactor(RECT bounds, double zoomFactor) noexcept override;
  HRESULT STDMETHODCALLTYPE MoveFocus(COREWEBVIEW2_MOVE_FOCUS_REASON reason) noexcept override;
  HRESULT STDMETHODCALLTYPE get_ParentWindow(HWND* value) noexcept override;
  HRESULT STDMETHODCALLTYPE put_ParentWindow(HWND value) noexcept override;
  HRESULT STDMETHODCALLTYPE NotifyParentWindowPositionChanged() noexcept override;
  HRESULT STDMETHODCALLTYPE Close() noexcept override;
  HRESULT STDMETHODCALLTYPE get_CoreWebView2(ICoreWebView2** value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_DefaultBackgroundColor(COREWEBVIEW2_COLOR* value) noexcept override;
  HRESULT STDMETHODCALLTYPE put_DefaultBackgroundColor(COREWEBVIEW2_COLOR value) noexcept override;

 private:
  ~Controller() override;

  template <typename Body>
  [[nodiscard]] HRESULT WhileOpen(Body&& body) noexcept;

  std::shared_ptr<CompletionQueue> queue_;
  HWND parent_;
  std::unique_ptr<ViewWindow> window_;
  ComPtr<CoreWebView> view_;
  double zoomFactor_ = 1.0;
};

}  // namespace qv::devhost
