#pragma once

#include <eventtoken.h>
#include <objidl.h>
#include <windows.h>

#include "foundation/com_object.h"

// The part of Microsoft's WebView2 interface that a host needs, declared by hand because MinGW has no header
// for it. Member order is the binary contract: never reorder, and never leave one out in the middle. Text
// results (LPWSTR*) are freed with CoTaskMemFree. Everything is called on the UI thread that made the
// environment, a single-threaded apartment with a message loop. Reference:
// https://learn.microsoft.com/microsoft-edge/webview2/reference/win32/

struct ICoreWebView2;
struct ICoreWebView2AcceleratorKeyPressedEventArgs;
struct ICoreWebView2AcceleratorKeyPressedEventHandler;
struct ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler;
struct ICoreWebView2CallDevToolsProtocolMethodCompletedHandler;
struct ICoreWebView2CapturePreviewCompletedHandler;
struct ICoreWebView2ContainsFullScreenElementChangedEventHandler;
struct ICoreWebView2ContentLoadingEventHandler;
struct ICoreWebView2Controller;
struct ICoreWebView2Controller2;
struct ICoreWebView2CreateCoreWebView2ControllerCompletedHandler;
struct ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler;
struct ICoreWebView2Deferral;
struct ICoreWebView2DevToolsProtocolEventReceiver;
struct ICoreWebView2DocumentTitleChangedEventHandler;
struct ICoreWebView2Environment;
struct ICoreWebView2EnvironmentOptions;
struct ICoreWebView2ExecuteScriptCompletedHandler;
struct ICoreWebView2FocusChangedEventHandler;
struct ICoreWebView2HistoryChangedEventHandler;
struct ICoreWebView2HttpRequestHeaders;
struct ICoreWebView2MoveFocusRequestedEventHandler;
struct ICoreWebView2NavigationCompletedEventArgs;
struct ICoreWebView2NavigationCompletedEventHandler;
struct ICoreWebView2NavigationStartingEventArgs;
struct ICoreWebView2NavigationStartingEventHandler;
struct ICoreWebView2NewBrowserVersionAvailableEventHandler;
struct ICoreWebView2NewWindowRequestedEventArgs;
struct ICoreWebView2NewWindowRequestedEventHandler;
struct ICoreWebView2PermissionRequestedEventArgs;
struct ICoreWebView2PermissionRequestedEventHandler;
struct ICoreWebView2ProcessFailedEventArgs;
struct ICoreWebView2ProcessFailedEventHandler;
struct ICoreWebView2ScriptDialogOpeningEventHandler;
struct ICoreWebView2Settings;
struct ICoreWebView2SourceChangedEventHandler;
struct ICoreWebView2WebMessageReceivedEventArgs;
struct ICoreWebView2WebMessageReceivedEventHandler;
struct ICoreWebView2WebResourceRequestedEventHandler;
struct ICoreWebView2WebResourceResponse;
struct ICoreWebView2WindowCloseRequestedEventHandler;
struct ICoreWebView2WindowFeatures;
struct ICoreWebView2ZoomFactorChangedEventHandler;

/// Four bytes in memory order alpha, red, green, blue; passed by value.
struct COREWEBVIEW2_COLOR {
  BYTE A;
  BYTE R;
  BYTE G;
  BYTE B;
};

enum COREWEBVIEW2_MOVE_FOCUS_REASON : int {
  COREWEBVIEW2_MOVE_FOCUS_REASON_PROGRAMMATIC = 0,
  COREWEBVIEW2_MOVE_FOCUS_REASON_NEXT = 1,
  COREWEBVIEW2_MOVE_FOCUS_REASON_PREVIOUS = 2,
};

/// Which process a failure is about; there are more kinds, none of which ends a page.
enum COREWEBVIEW2_PROCESS_FAILED_KIND : int {
  COREWEBVIEW2_PROCESS_FAILED_KIND_BROWSER_PROCESS_EXITED = 0,
  COREWEBVIEW2_PROCESS_FAILED_KIND_RENDER_PROCESS_EXITED = 1,
  COREWEBVIEW2_PROCESS_FAILED_KIND_RENDER_PROCESS_UNRESPONSIVE = 2,
  COREWEBVIEW2_PROCESS_FAILED_KIND_FRAME_RENDER_PROCESS_EXITED = 3,
};

enum COREWEBVIEW2_WEB_ERROR_STATUS : int {
  COREWEBVIEW2_WEB_ERROR_STATUS_UNKNOWN = 0,
  COREWEBVIEW2_WEB_ERROR_STATUS_CERTIFICATE_COMMON_NAME_IS_INCORRECT = 1,
  COREWEBVIEW2_WEB_ERROR_STATUS_CERTIFICATE_EXPIRED = 2,
  COREWEBVIEW2_WEB_ERROR_STATUS_CLIENT_CERTIFICATE_CONTAINS_ERRORS = 3,
  COREWEBVIEW2_WEB_ERROR_STATUS_CERTIFICATE_REVOKED = 4,
  COREWEBVIEW2_WEB_ERROR_STATUS_CERTIFICATE_IS_INVALID = 5,
  COREWEBVIEW2_WEB_ERROR_STATUS_SERVER_UNREACHABLE = 6,
  COREWEBVIEW2_WEB_ERROR_STATUS_TIMEOUT = 7,
  COREWEBVIEW2_WEB_ERROR_STATUS_ERROR_HTTP_INVALID_SERVER_RESPONSE = 8,
  COREWEBVIEW2_WEB_ERROR_STATUS_CONNECTION_ABORTED = 9,
  COREWEBVIEW2_WEB_ERROR_STATUS_CONNECTION_RESET = 10,
  COREWEBVIEW2_WEB_ERROR_STATUS_DISCONNECTED = 11,
  COREWEBVIEW2_WEB_ERROR_STATUS_CANNOT_CONNECT = 12,
  COREWEBVIEW2_WEB_ERROR_STATUS_HOST_NAME_NOT_RESOLVED = 13,
  COREWEBVIEW2_WEB_ERROR_STATUS_OPERATION_CANCELED = 14,
  COREWEBVIEW2_WEB_ERROR_STATUS_REDIRECT_FAILED = 15,
  COREWEBVIEW2_WEB_ERROR_STATUS_UNEXPECTED_ERROR = 16,
  COREWEBVIEW2_WEB_ERROR_STATUS_VALID_AUTHENTICATION_CREDENTIALS_REQUIRED = 17,
  COREWEBVIEW2_WEB_ERROR_STATUS_VALID_PROXY_AUTHENTICATION_REQUIRED = 18,
};

// Passed through only; no value is used here.
enum COREWEBVIEW2_CAPTURE_PREVIEW_IMAGE_FORMAT : int;
enum COREWEBVIEW2_WEB_RESOURCE_CONTEXT : int;

/// One browser process and profile; makes controllers. `CreateCoreWebView2Controller` answers later on the
/// same thread, with E_ABORT when the parent window was destroyed meanwhile.
struct ICoreWebView2Environment : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE CreateCoreWebView2Controller(
      HWND parentWindow, ICoreWebView2CreateCoreWebView2ControllerCompletedHandler* handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  CreateWebResourceResponse(IStream* content, int statusCode, LPCWSTR reasonPhrase, LPCWSTR headers,
                            ICoreWebView2WebResourceResponse** response) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_BrowserVersionString(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_NewBrowserVersionAvailable(
      ICoreWebView2NewBrowserVersionAvailableEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_NewBrowserVersionAvailable(EventRegistrationToken token) = 0;
};

/// The window side of one web view: visibility, bounds in physical pixels of the parent's client area, focus.
/// `Close` is synchronous and drops every event handler; call it before the parent window goes away,
/// otherwise handlers and web view keep each other alive.
struct ICoreWebView2Controller : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_IsVisible(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsVisible(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Bounds(RECT* bounds) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Bounds(RECT bounds) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ZoomFactor(double* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ZoomFactor(double value) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_ZoomFactorChanged(ICoreWebView2ZoomFactorChangedEventHandler* handler,
                                                          EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_ZoomFactorChanged(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetBoundsAndZoomFactor(RECT bounds, double zoomFactor) = 0;
  virtual HRESULT STDMETHODCALLTYPE MoveFocus(COREWEBVIEW2_MOVE_FOCUS_REASON reason) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_MoveFocusRequested(
      ICoreWebView2MoveFocusRequestedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_MoveFocusRequested(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_GotFocus(ICoreWebView2FocusChangedEventHandler* handler,
                                                 EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_GotFocus(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_LostFocus(ICoreWebView2FocusChangedEventHandler* handler,
                                                  EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_LostFocus(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_AcceleratorKeyPressed(
      ICoreWebView2AcceleratorKeyPressedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_AcceleratorKeyPressed(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ParentWindow(HWND* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ParentWindow(HWND value) = 0;
  virtual HRESULT STDMETHODCALLTYPE NotifyParentWindowPositionChanged() = 0;
  virtual HRESULT STDMETHODCALLTYPE Close() = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CoreWebView2(ICoreWebView2** value) = 0;
};

/// Adds the colour that shows before the page has painted. Its alpha must be 0 or 255, else E_INVALIDARG.
struct ICoreWebView2Controller2 : public ICoreWebView2Controller {
  virtual HRESULT STDMETHODCALLTYPE get_DefaultBackgroundColor(COREWEBVIEW2_COLOR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_DefaultBackgroundColor(COREWEBVIEW2_COLOR value) = 0;
};

/// The page side of one web view. Scripts and messages to the page run asynchronously; a message posted
/// before a navigation has finished is lost. The handler of `ExecuteScript` may be null.
struct ICoreWebView2 : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_Settings(ICoreWebView2Settings** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Source(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Navigate(LPCWSTR uri) = 0;
  virtual HRESULT STDMETHODCALLTYPE NavigateToString(LPCWSTR html) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_NavigationStarting(
      ICoreWebView2NavigationStartingEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_NavigationStarting(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_ContentLoading(ICoreWebView2ContentLoadingEventHandler* handler,
                                                       EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_ContentLoading(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_SourceChanged(ICoreWebView2SourceChangedEventHandler* handler,
                                                      EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_SourceChanged(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_HistoryChanged(ICoreWebView2HistoryChangedEventHandler* handler,
                                                       EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_HistoryChanged(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_NavigationCompleted(
      ICoreWebView2NavigationCompletedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_NavigationCompleted(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_FrameNavigationStarting(
      ICoreWebView2NavigationStartingEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_FrameNavigationStarting(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_FrameNavigationCompleted(
      ICoreWebView2NavigationCompletedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_FrameNavigationCompleted(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_ScriptDialogOpening(
      ICoreWebView2ScriptDialogOpeningEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_ScriptDialogOpening(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_PermissionRequested(
      ICoreWebView2PermissionRequestedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_PermissionRequested(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_ProcessFailed(ICoreWebView2ProcessFailedEventHandler* handler,
                                                      EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_ProcessFailed(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddScriptToExecuteOnDocumentCreated(
      LPCWSTR script, ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler* handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveScriptToExecuteOnDocumentCreated(LPCWSTR id) = 0;
  virtual HRESULT STDMETHODCALLTYPE ExecuteScript(LPCWSTR script,
                                                  ICoreWebView2ExecuteScriptCompletedHandler* handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE CapturePreview(COREWEBVIEW2_CAPTURE_PREVIEW_IMAGE_FORMAT format,
                                                   IStream* stream,
                                                   ICoreWebView2CapturePreviewCompletedHandler* handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reload() = 0;
  virtual HRESULT STDMETHODCALLTYPE PostWebMessageAsJson(LPCWSTR json) = 0;
  virtual HRESULT STDMETHODCALLTYPE PostWebMessageAsString(LPCWSTR text) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_WebMessageReceived(
      ICoreWebView2WebMessageReceivedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_WebMessageReceived(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  CallDevToolsProtocolMethod(LPCWSTR method, LPCWSTR parametersJson,
                             ICoreWebView2CallDevToolsProtocolMethodCompletedHandler* handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_BrowserProcessId(UINT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CanGoBack(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CanGoForward(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GoBack() = 0;
  virtual HRESULT STDMETHODCALLTYPE GoForward() = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDevToolsProtocolEventReceiver(
      LPCWSTR eventName, ICoreWebView2DevToolsProtocolEventReceiver** receiver) = 0;
  virtual HRESULT STDMETHODCALLTYPE Stop() = 0;
  virtual HRESULT STDMETHODCALLTYPE add_NewWindowRequested(
      ICoreWebView2NewWindowRequestedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_NewWindowRequested(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_DocumentTitleChanged(
      ICoreWebView2DocumentTitleChangedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_DocumentTitleChanged(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DocumentTitle(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddHostObjectToScript(LPCWSTR name, VARIANT* object) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveHostObjectFromScript(LPCWSTR name) = 0;
  virtual HRESULT STDMETHODCALLTYPE OpenDevToolsWindow() = 0;
  virtual HRESULT STDMETHODCALLTYPE add_ContainsFullScreenElementChanged(
      ICoreWebView2ContainsFullScreenElementChangedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_ContainsFullScreenElementChanged(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ContainsFullScreenElement(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_WebResourceRequested(
      ICoreWebView2WebResourceRequestedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_WebResourceRequested(EventRegistrationToken token) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  AddWebResourceRequestedFilter(LPCWSTR uri, COREWEBVIEW2_WEB_RESOURCE_CONTEXT context) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  RemoveWebResourceRequestedFilter(LPCWSTR uri, COREWEBVIEW2_WEB_RESOURCE_CONTEXT context) = 0;
  virtual HRESULT STDMETHODCALLTYPE add_WindowCloseRequested(
      ICoreWebView2WindowCloseRequestedEventHandler* handler, EventRegistrationToken* token) = 0;
  virtual HRESULT STDMETHODCALLTYPE remove_WindowCloseRequested(EventRegistrationToken token) = 0;
};

/// What the page may do. Changes apply from the next navigation on.
struct ICoreWebView2Settings : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_IsScriptEnabled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsScriptEnabled(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsWebMessageEnabled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsWebMessageEnabled(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_AreDefaultScriptDialogsEnabled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_AreDefaultScriptDialogsEnabled(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsStatusBarEnabled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsStatusBarEnabled(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_AreDevToolsEnabled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_AreDevToolsEnabled(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_AreDefaultContextMenusEnabled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_AreDefaultContextMenusEnabled(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_AreHostObjectsAllowed(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_AreHostObjectsAllowed(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsZoomControlEnabled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsZoomControlEnabled(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsBuiltInErrorPageEnabled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsBuiltInErrorPageEnabled(BOOL value) = 0;
};

/// A message of the page. `TryGetWebMessageAsString` gives E_INVALIDARG when the page posted anything but a
/// string.
struct ICoreWebView2WebMessageReceivedEventArgs : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_Source(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WebMessageAsJson(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE TryGetWebMessageAsString(LPWSTR* value) = 0;
};

/// A navigation that may still be cancelled.
struct ICoreWebView2NavigationStartingEventArgs : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_Uri(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsUserInitiated(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsRedirected(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_RequestHeaders(ICoreWebView2HttpRequestHeaders** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Cancel(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Cancel(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NavigationId(UINT64* value) = 0;
};

/// How a navigation ended. The error status says something only when `get_IsSuccess` gives FALSE.
struct ICoreWebView2NavigationCompletedEventArgs : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_IsSuccess(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WebErrorStatus(COREWEBVIEW2_WEB_ERROR_STATUS* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NavigationId(UINT64* value) = 0;
};

/// Which process of the browser ended. It has an interface id of its own that nobody here needs: handlers get
/// the interface itself.
struct ICoreWebView2ProcessFailedEventArgs : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_ProcessFailedKind(COREWEBVIEW2_PROCESS_FAILED_KIND* value) = 0;
};

/// Options of an environment; null stands for all defaults.
struct ICoreWebView2EnvironmentOptions : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_AdditionalBrowserArguments(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_AdditionalBrowserArguments(LPCWSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Language(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Language(LPCWSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TargetCompatibleBrowserVersion(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_TargetCompatibleBrowserVersion(LPCWSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_AllowSingleSignOnUsingOSPrimaryAccount(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_AllowSingleSignOnUsingOSPrimaryAccount(BOOL value) = 0;
};

// Handlers, implemented by the caller. Each is invoked on the thread that made the environment, never from
// within the call that was given it.

struct ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, ICoreWebView2Environment* environment) = 0;
};

struct ICoreWebView2CreateCoreWebView2ControllerCompletedHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, ICoreWebView2Controller* controller) = 0;
};

struct ICoreWebView2ExecuteScriptCompletedHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, LPCWSTR resultJson) = 0;
};

struct ICoreWebView2WebMessageReceivedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender,
                                           ICoreWebView2WebMessageReceivedEventArgs* args) = 0;
};

struct ICoreWebView2NavigationStartingEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender,
                                           ICoreWebView2NavigationStartingEventArgs* args) = 0;
};

struct ICoreWebView2NavigationCompletedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender,
                                           ICoreWebView2NavigationCompletedEventArgs* args) = 0;
};

struct ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, LPCWSTR id) = 0;
};

struct ICoreWebView2NewWindowRequestedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender,
                                           ICoreWebView2NewWindowRequestedEventArgs* args) = 0;
};

struct ICoreWebView2ProcessFailedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender,
                                           ICoreWebView2ProcessFailedEventArgs* args) = 0;
};

struct ICoreWebView2FocusChangedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2Controller* sender, IUnknown* args) = 0;
};

struct ICoreWebView2AcceleratorKeyPressedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2Controller* sender,
                                           ICoreWebView2AcceleratorKeyPressedEventArgs* args) = 0;
};

struct ICoreWebView2WindowCloseRequestedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender, IUnknown* args) = 0;
};

struct ICoreWebView2PermissionRequestedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender,
                                           ICoreWebView2PermissionRequestedEventArgs* args) = 0;
};

struct ICoreWebView2DocumentTitleChangedEventHandler : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender, IUnknown* args) = 0;
};

/// The page wants another window; `put_Handled(TRUE)` without a window suppresses it.
struct ICoreWebView2NewWindowRequestedEventArgs : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_Uri(LPWSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_NewWindow(ICoreWebView2* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NewWindow(ICoreWebView2** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Handled(BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Handled(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsUserInitiated(BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDeferral(ICoreWebView2Deferral** deferral) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WindowFeatures(ICoreWebView2WindowFeatures** value) = 0;
};

// Interface identifiers.
__CRT_UUID_DECL(ICoreWebView2Environment, 0xB96D755E, 0x0319, 0x4E92, 0xA2, 0x96, 0x23, 0x43, 0x6F, 0x46,
                0xA1, 0xFC)
__CRT_UUID_DECL(ICoreWebView2Controller, 0x4D00C0D1, 0x9434, 0x4EB6, 0x80, 0x78, 0x86, 0x97, 0xA5, 0x60, 0x33,
                0x4F)
__CRT_UUID_DECL(ICoreWebView2Controller2, 0xC979903E, 0xD4CA, 0x4228, 0x92, 0xEB, 0x47, 0xEE, 0x3F, 0xA9,
                0x6E, 0xAB)
__CRT_UUID_DECL(ICoreWebView2, 0x76ECEACB, 0x0462, 0x4D94, 0xAC, 0x83, 0x42, 0x3A, 0x67, 0x93, 0x77, 0x5E)
__CRT_UUID_DECL(ICoreWebView2Settings, 0xE562E4F0, 0xD7FA, 0x43AC, 0x8D, 0x71, 0xC0, 0x51, 0x50, 0x49, 0x9F,
                0x00)
__CRT_UUID_DECL(ICoreWebView2WebMessageReceivedEventArgs, 0x0F99A40C, 0xE962, 0x4207, 0x9E, 0x92, 0xE3, 0xD5,
                0x42, 0xEF, 0xF8, 0x49)
__CRT_UUID_DECL(ICoreWebView2NavigationStartingEventArgs, 0x5B495469, 0xE119, 0x438A, 0x9B, 0x18, 0x76, 0x04,
                0xF2, 0x5F, 0x2E, 0x49)
__CRT_UUID_DECL(ICoreWebView2NavigationCompletedEventArgs, 0x30D68B7D, 0x20D9, 0x4752, 0xA9, 0xCA, 0xEC, 0x84,
                0x48, 0xFB, 0xB5, 0xC1)
__CRT_UUID_DECL(ICoreWebView2EnvironmentOptions, 0x2FDE08A8, 0x1E9A, 0x4766, 0x8C, 0x05, 0x95, 0xA9, 0xCE,
                0xB9, 0xD1, 0xC5)
__CRT_UUID_DECL(ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler, 0x4E8A3389, 0xC9D8, 0x4BD2, 0xB6,
                0xB5, 0x12, 0x4F, 0xEE, 0x6C, 0xC1, 0x4D)
__CRT_UUID_DECL(ICoreWebView2CreateCoreWebView2ControllerCompletedHandler, 0x6C4819F3, 0xC9B7, 0x4260, 0x81,
                0x27, 0xC9, 0xF5, 0xBD, 0xE7, 0xF6, 0x8C)
__CRT_UUID_DECL(ICoreWebView2ExecuteScriptCompletedHandler, 0x49511172, 0xCC67, 0x4BCA, 0x99, 0x23, 0x13,
                0x71, 0x12, 0xF4, 0xC4, 0xCC)
__CRT_UUID_DECL(ICoreWebView2WebMessageReceivedEventHandler, 0x57213F19, 0x00E6, 0x49FA, 0x8E, 0x07, 0x89,
                0x8E, 0xA0, 0x1E, 0xCB, 0xD2)
__CRT_UUID_DECL(ICoreWebView2NavigationStartingEventHandler, 0x9ADBE429, 0xF36D, 0x432B, 0x9D, 0xDC, 0xF8,
                0x88, 0x1F, 0xBD, 0x76, 0xE3)
__CRT_UUID_DECL(ICoreWebView2NavigationCompletedEventHandler, 0xD33A35BF, 0x1C49, 0x4F98, 0x93, 0xAB, 0x00,
                0x6E, 0x05, 0x33, 0xFE, 0x1C)
__CRT_UUID_DECL(ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler, 0xB99369F3, 0x9B11, 0x47B5,
                0xBC, 0x6F, 0x8E, 0x78, 0x95, 0xFC, 0xEA, 0x17)
__CRT_UUID_DECL(ICoreWebView2NewWindowRequestedEventHandler, 0xD4C185FE, 0xC81C, 0x4989, 0x97, 0xAF, 0x2D,
                0x3F, 0xA7, 0xAB, 0x56, 0x51)
__CRT_UUID_DECL(ICoreWebView2ProcessFailedEventHandler, 0x79E0AEA4, 0x990B, 0x42D9, 0xAA, 0x1D, 0x0F, 0xCC,
                0x2E, 0x5B, 0xC7, 0xF1)
__CRT_UUID_DECL(ICoreWebView2FocusChangedEventHandler, 0x05EA24BD, 0x6452, 0x4926, 0x90, 0x14, 0x4B, 0x82,
                0xB4, 0x98, 0x13, 0x5D)
__CRT_UUID_DECL(ICoreWebView2AcceleratorKeyPressedEventHandler, 0xB29C7E28, 0xFA79, 0x41A8, 0x8E, 0x44, 0x65,
                0x81, 0x1C, 0x76, 0xDC, 0xB2)
__CRT_UUID_DECL(ICoreWebView2WindowCloseRequestedEventHandler, 0x5C19E9E0, 0x092F, 0x486B, 0xAF, 0xFA, 0xCA,
                0x82, 0x31, 0x91, 0x30, 0x39)
__CRT_UUID_DECL(ICoreWebView2PermissionRequestedEventHandler, 0x15E1C6A3, 0xC72A, 0x4DF3, 0x91, 0xD7, 0xD0,
                0x97, 0xFB, 0xEC, 0x6B, 0xFD)
__CRT_UUID_DECL(ICoreWebView2DocumentTitleChangedEventHandler, 0xF5F2B923, 0x953E, 0x4042, 0x9F, 0x95, 0xF3,
                0xA1, 0x18, 0xE1, 0xAF, 0xD4)
__CRT_UUID_DECL(ICoreWebView2NewWindowRequestedEventArgs, 0x34ACB11C, 0xFC37, 0x4418, 0x91, 0x32, 0xF9, 0xC2,
                0x1D, 0x1E, 0xAF, 0xB9)

/// Export "CreateCoreWebView2EnvironmentWithOptions" of WebView2Loader.dll. Null folders and options mean the
/// installed runtime, the default profile and default options. S_OK promises that the handler is invoked
/// later.
using CreateCoreWebView2EnvironmentWithOptionsFunction = HRESULT(WINAPI*)(
    PCWSTR browserExecutableFolder, PCWSTR userDataFolder, ICoreWebView2EnvironmentOptions* options,
    ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler);

/// Export "GetAvailableCoreWebView2BrowserVersionString" of WebView2Loader.dll; ERROR_FILE_NOT_FOUND as an
/// HRESULT when no runtime is installed. The text is freed with CoTaskMemFree.
using GetAvailableCoreWebView2BrowserVersionStringFunction = HRESULT(WINAPI*)(PCWSTR browserExecutableFolder,
                                                                              LPWSTR* versionInfo);

/// Export "CompareBrowserVersions" of WebView2Loader.dll: -1, 0 or 1 for older, equal, newer.
using CompareBrowserVersionsFunction = HRESULT(WINAPI*)(PCWSTR version1, PCWSTR version2, int* result);

/// Which installation `CreateWebViewEnvironmentWithOptionsInternal` shall use.
enum class WebView2RuntimeType : int { kUnknown = -1, kInstalled = 0, kFixedVersion = 1 };

/// Export "CreateWebViewEnvironmentWithOptionsInternal" of EmbeddedBrowserWebView.dll, the runtime itself,
/// for use without the loader. `checkRunningInstance` joins a runtime that already runs on the same user data
/// folder. The folder must be absolute: the default lies beside the host's executable. Keep the library
/// loaded afterwards.
using CreateWebViewEnvironmentWithOptionsInternalFunction = HRESULT(STDMETHODCALLTYPE*)(
    bool checkRunningInstance, WebView2RuntimeType runtimeType, PCWSTR userDataFolder,
    IUnknown* environmentOptions, ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler);

/// A Controller2 is asked for by its base's identifier as well.
template <>
struct qv::ComBaseOf<ICoreWebView2Controller2> {
  using Type = ICoreWebView2Controller;
};
