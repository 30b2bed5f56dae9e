#pragma once

#include "foundation/com_object.h"
#include "panel/webview2_interfaces.h"

namespace qv::devhost {

/// The events of a controller, none of which the stand-in raises: E_NOTIMPL, so that a caller notices.
class ControllerStubs : public ComObject<ICoreWebView2Controller2> {
 public:
  HRESULT STDMETHODCALLTYPE add_ZoomFactorChanged(ICoreWebView2ZoomFactorChangedEventHandler*,
                                                  EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_ZoomFactorChanged(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_MoveFocusRequested(ICoreWebView2MoveFocusRequestedEventHandler*,
                                                   EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_MoveFocusRequested(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_GotFocus(ICoreWebView2FocusChangedEventHandler*,
                                         EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_GotFocus(EventRegistrationToken) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE add_LostFocus(ICoreWebView2FocusChangedEventHandler*,
                                          EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_LostFocus(EventRegistrationToken) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE add_AcceleratorKeyPressed(ICoreWebView2AcceleratorKeyPressedEventHandler*,
                                                      EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_AcceleratorKeyPressed(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
};

}  // namespace qv::devhost
