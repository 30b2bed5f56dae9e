#pragma once

#include "foundation/com_object.h"
#include "panel/webview2_interfaces.h"

namespace qv::devhost {

/// The members of a web view that the stand-in does not offer: E_NOTIMPL, so that a caller notices.
class CoreWebViewStubs : public ComObject<ICoreWebView2> {
 public:
  HRESULT STDMETHODCALLTYPE NavigateToString(LPCWSTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE add_ContentLoading(ICoreWebView2ContentLoadingEventHandler*,
                                               EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_ContentLoading(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_SourceChanged(ICoreWebView2SourceChangedEventHandler*,
                                              EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_SourceChanged(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_HistoryChanged(ICoreWebView2HistoryChangedEventHandler*,
                                               EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_HistoryChanged(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_FrameNavigationStarting(ICoreWebView2NavigationStartingEventHandler*,
                                                        EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_FrameNavigationStarting(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_FrameNavigationCompleted(ICoreWebView2NavigationCompletedEventHandler*,
                                                         EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_FrameNavigationCompleted(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_ScriptDialogOpening(ICoreWebView2ScriptDialogOpeningEventHandler*,
                                                    EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_ScriptDialogOpening(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_PermissionRequested(ICoreWebView2PermissionRequestedEventHandler*,
                                                    EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_PermissionRequested(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE AddScriptToExecuteOnDocumentCreated(
      LPCWSTR, ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE RemoveScriptToExecuteOnDocumentCreated(LPCWSTR) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CapturePreview(COREWEBVIEW2_CAPTURE_PREVIEW_IMAGE_FORMAT, IStream*,
                                           ICoreWebView2CapturePreviewCompletedHandler*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Reload() noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE PostWebMessageAsString(LPCWSTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CallDevToolsProtocolMethod(
      LPCWSTR, LPCWSTR, ICoreWebView2CallDevToolsProtocolMethodCompletedHandler*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_BrowserProcessId(UINT32*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CanGoBack(BOOL*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CanGoForward(BOOL*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GoBack() noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GoForward() noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE
  GetDevToolsProtocolEventReceiver(LPCWSTR, ICoreWebView2DevToolsProtocolEventReceiver**) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Stop() noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE add_NewWindowRequested(ICoreWebView2NewWindowRequestedEventHandler*,
                                                   EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_NewWindowRequested(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_DocumentTitleChanged(ICoreWebView2DocumentTitleChangedEventHandler*,
                                                     EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_DocumentTitleChanged(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_DocumentTitle(LPWSTR*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddHostObjectToScript(LPCWSTR, VARIANT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RemoveHostObjectFromScript(LPCWSTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OpenDevToolsWindow() noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE add_ContainsFullScreenElementChanged(
      ICoreWebView2ContainsFullScreenElementChangedEventHandler*, EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE
  remove_ContainsFullScreenElementChanged(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_ContainsFullScreenElement(BOOL*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE add_WebResourceRequested(ICoreWebView2WebResourceRequestedEventHandler*,
                                                     EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_WebResourceRequested(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE
  AddWebResourceRequestedFilter(LPCWSTR, COREWEBVIEW2_WEB_RESOURCE_CONTEXT) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE
  RemoveWebResourceRequestedFilter(LPCWSTR, COREWEBVIEW2_WEB_RESOURCE_CONTEXT) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE add_WindowCloseRequested(ICoreWebView2WindowCloseRequestedEventHandler*,
                                                     EventRegistrationToken*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE remove_WindowCloseRequested(EventRegistrationToken) noexcept override {
    return E_NOTIMPL;
  }
};

}  // namespace qv::devhost
