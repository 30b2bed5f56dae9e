#include "panel/web_view.h"

#include "foundation/com_object.h"
#include "foundation/guard.h"
#include "foundation/text.h"
#include "panel/pane_background.h"
#include "panel/task_memory.h"
#include "panel/web_view_environment.h"
#include "panel/web_view_handler.h"

namespace qv {
namespace {

constexpr wchar_t kEnvironmentStep[] = L"CreateCoreWebView2EnvironmentWithOptions";
constexpr wchar_t kControllerStep[] = L"CreateCoreWebView2Controller";
constexpr wchar_t kUserDataStep[] = L"QuorvantisWebView2UserDataDir";

constexpr COREWEBVIEW2_COLOR kBackground = {.A = 255,
                                            .R = GetRValue(kPaneBackground),
                                            .G = GetGValue(kPaneBackground),
                                            .B = GetBValue(kPaneBackground)};

/// A load that another one replaced ends with either, depending on how far it had come.
bool WasGivenUp(COREWEBVIEW2_WEB_ERROR_STATUS status) {
  return status == COREWEBVIEW2_WEB_ERROR_STATUS_CONNECTION_ABORTED ||
         status == COREWEBVIEW2_WEB_ERROR_STATUS_OPERATION_CANCELED;
}

/// Hands a script's result on for as long as the view lives.
class ScriptCompletion final : public ComObject<ICoreWebView2ExecuteScriptCompletedHandler> {
 public:
  ScriptCompletion(std::shared_ptr<WebViewLink> link, WebView::ScriptDone done)
      : link_(std::move(link)), done_(std::move(done)) {}

  HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, LPCWSTR json) noexcept override {
    return GuardHr(L"ScriptCompletion", [&] {
      if (link_->view != nullptr) done_(result, json != nullptr ? json : L"");
      return S_OK;
    });
  }

 private:
  std::shared_ptr<WebViewLink> link_;
  WebView::ScriptDone done_;
};

}  // namespace

void WebView::Start(HWND window) {
  Close();
  window_ = window;
  Log(L"InitWebView begin", S_OK);
  const std::wstring userDataDir = WebViewUserDataDir();
  if (userDataDir.empty()) {
    events_.OnWebViewFailed(kUserDataStep, HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND));
    return;
  }
  link_ = std::make_shared<WebViewLink>(this);
  const auto handler = MakeWebViewHandler<ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler>(
      link_, &WebView::OnEnvironmentCreated);
  const HRESULT hr = CreateWebViewEnvironment(userDataDir, handler.Get());
  Log(kEnvironmentStep, hr);
  if (FAILED(hr)) events_.OnWebViewFailed(kEnvironmentStep, hr);
}

void WebView::OnEnvironmentCreated(WebView* view, HRESULT result, ICoreWebView2Environment* environment) {
  if (view == nullptr) return;
  if (SUCCEEDED(result) && environment == nullptr) result = E_FAIL;
  view->Log(L"Environment callback", result);
  if (FAILED(result)) {
    view->events_.OnWebViewFailed(kEnvironmentStep, result);
    return;
  }
  view->environment_ = environment;
  view->CreateController();
}

void WebView::StartIn(ICoreWebView2Environment* environment, HWND window) {
  const ComPtr<ICoreWebView2Environment> shared(environment);
  Close();
  window_ = window;
  environment_ = shared;
  link_ = std::make_shared<WebViewLink>(this);
  CreateController();
}

void WebView::CreateController() {
  const auto handler = MakeWebViewHandler<ICoreWebView2CreateCoreWebView2ControllerCompletedHandler>(
      link_, &WebView::OnControllerCreated);
  const HRESULT hr = environment_->CreateCoreWebView2Controller(window_, handler.Get());
  Log(kControllerStep, hr);
  if (FAILED(hr)) events_.OnWebViewFailed(kControllerStep, hr);
}

void WebView::OnControllerCreated(WebView* view, HRESULT result, ICoreWebView2Controller* controller) {
  if (view == nullptr) {
    // The pane closed while the browser was starting: nobody else would close what it made.
    if (controller != nullptr) static_cast<void>(controller->Close());
    return;
  }
  if (SUCCEEDED(result) && controller == nullptr) result = E_FAIL;
  view->Log(L"Controller callback", result);
  if (FAILED(result)) {
    view->events_.OnWebViewFailed(kControllerStep, result);
    return;
  }
  view->controller_ = controller;
  view->SetUpController();
}

void WebView::SetUpController() {
  Log(L"put_IsVisible", controller_->put_IsVisible(TRUE));
  ComPtr<ICoreWebView2Controller2> colored;
  // Runtimes before the first stable ones lack the background colour; the page covers it anyway.
  if (SUCCEEDED(controller_.As(&colored))) {
    Log(L"put_DefaultBackgroundColor", colored->put_DefaultBackgroundColor(kBackground));
  }
  const HRESULT hr = controller_->get_CoreWebView2(&view_);
  Log(view_ != nullptr ? L"get_CoreWebView2 OK" : L"get_CoreWebView2 returned null", hr);
  if (view_ == nullptr) {
    events_.OnWebViewFailed(kControllerStep, FAILED(hr) ? hr : E_FAIL);
    return;
  }
  ApplySettings();
  RegisterHandlers();
  Fit();
  events_.OnWebViewReady();
}

void WebView::ApplySettings() {
  ComPtr<ICoreWebView2Settings> settings;
  const HRESULT hr = view_->get_Settings(&settings);
  Log(L"get_Settings", hr);
  if (settings == nullptr) return;
  Log(L"put_AreDefaultContextMenusEnabled", settings->put_AreDefaultContextMenusEnabled(TRUE));
  Log(L"put_AreDevToolsEnabled", settings->put_AreDevToolsEnabled(FALSE));
}

void WebView::RegisterHandlers() {
  // Nothing is ever removed one by one: closing the controller drops them all.
  EventRegistrationToken token{};
  Log(L"add_WebMessageReceived",
      view_->add_WebMessageReceived(
          MakeWebViewHandler<ICoreWebView2WebMessageReceivedEventHandler>(link_, &WebView::OnMessage).Get(),
          &token));
  Log(L"add_NavigationStarting",
      view_->add_NavigationStarting(MakeWebViewHandler<ICoreWebView2NavigationStartingEventHandler>(
                                        link_, &WebView::OnNavigationStarting)
                                        .Get(),
                                    &token));
  Log(L"add_NavigationCompleted",
      view_->add_NavigationCompleted(MakeWebViewHandler<ICoreWebView2NavigationCompletedEventHandler>(
                                         link_, &WebView::OnNavigationCompleted)
                                         .Get(),
                                     &token));
  Log(L"add_ProcessFailed",
      view_->add_ProcessFailed(
          MakeWebViewHandler<ICoreWebView2ProcessFailedEventHandler>(link_, &WebView::OnProcessFailed).Get(),
          &token));
}

void WebView::OnMessage(WebView* view, ICoreWebView2*, ICoreWebView2WebMessageReceivedEventArgs* args) {
  if (view == nullptr || view->context_.IsClosing() || args == nullptr) return;
  TaskMemoryText source;
  // A failure leaves the source empty, which belongs to no origin.
  static_cast<void>(args->get_Source(source.Put()));
  TaskMemoryText text;
  std::optional<std::wstring> message;
  if (SUCCEEDED(args->TryGetWebMessageAsString(text.Put()))) message = text.Text();
  view->events_.OnWebMessage(source.Text(), message);
}

void WebView::OnNavigationStarting(WebView* view, ICoreWebView2*, ICoreWebView2NavigationStartingEventArgs*) {
  if (view != nullptr) view->Log(L"webview_navigating", S_OK);
}

void WebView::OnNavigationCompleted(WebView* view, ICoreWebView2*,
                                    ICoreWebView2NavigationCompletedEventArgs* args) {
  if (view == nullptr || args == nullptr) return;
  BOOL success = FALSE;
  COREWEBVIEW2_WEB_ERROR_STATUS status = COREWEBVIEW2_WEB_ERROR_STATUS_UNKNOWN;
  const HRESULT hr = args->get_IsSuccess(&success);
  static_cast<void>(args->get_WebErrorStatus(&status));
  view->Log(Concat(L"NavigationCompleted success=", success != FALSE, L" status=", static_cast<int>(status)),
            hr);
  if (view->context_.IsClosing()) return;
  if (success != FALSE) {
    view->events_.OnNavigated();
  } else if (!WasGivenUp(status)) {
    view->events_.OnNavigationFailed();
  }
}

void WebView::OnProcessFailed(WebView* view, ICoreWebView2*, ICoreWebView2ProcessFailedEventArgs* args) {
  if (view == nullptr || args == nullptr || view->context_.IsClosing()) return;
  COREWEBVIEW2_PROCESS_FAILED_KIND kind = COREWEBVIEW2_PROCESS_FAILED_KIND_RENDER_PROCESS_UNRESPONSIVE;
  static_cast<void>(args->get_ProcessFailedKind(&kind));
  // A page that is slow may come back, and frames and helpers are the browser's own affair.
  if (kind == COREWEBVIEW2_PROCESS_FAILED_KIND_BROWSER_PROCESS_EXITED) view->events_.OnBrowserLost();
  if (kind == COREWEBVIEW2_PROCESS_FAILED_KIND_RENDER_PROCESS_EXITED) view->events_.OnPageLost();
}

bool WebView::Navigate(const std::wstring& url) {
  if (view_ == nullptr) return false;
  Log(url, S_OK);
  const HRESULT hr = view_->Navigate(url.c_str());
  Log(L"Navigate returned", hr);
  return SUCCEEDED(hr);
}

std::wstring WebView::Source() const {
  if (view_ == nullptr) return {};
  TaskMemoryText source;
  return SUCCEEDED(view_->get_Source(source.Put())) ? source.Text() : std::wstring();
}

void WebView::ExecuteScript(const std::wstring& script) {
  // A page that is gone or not there yet needs no answer.
  if (view_ != nullptr) static_cast<void>(view_->ExecuteScript(script.c_str(), nullptr));
}

bool WebView::ExecuteScript(const std::wstring& script, ScriptDone done) {
  if (view_ == nullptr) return false;
  const auto handler = MakeCom<ScriptCompletion>(link_, std::move(done));
  return SUCCEEDED(view_->ExecuteScript(script.c_str(), handler.Get()));
}

void WebView::PostJson(const std::wstring& json) {
  if (view_ != nullptr) static_cast<void>(view_->PostWebMessageAsJson(json.c_str()));
}

void WebView::Fit() {
  RECT bounds{};
  if (controller_ == nullptr || !GetClientRect(window_, &bounds) || IsRectEmpty(&bounds)) return;
  static_cast<void>(controller_->put_Bounds(bounds));
}

void WebView::FollowWindow() {
  POINT place{};
  if (controller_ == nullptr || !ClientToScreen(window_, &place)) return;
  if (place.x == place_.x && place.y == place_.y) return;
  place_ = place;
  static_cast<void>(controller_->NotifyParentWindowPositionChanged());
}

void WebView::Focus() {
  if (controller_ == nullptr) return;
  static_cast<void>(controller_->MoveFocus(COREWEBVIEW2_MOVE_FOCUS_REASON_PROGRAMMATIC));
}

void WebView::Close() {
  if (link_ != nullptr) link_->view = nullptr;
  link_.reset();
  view_.Reset();
  // Taken out first: closing may call back into the pane.
  if (const ComPtr<ICoreWebView2Controller> controller = std::move(controller_)) {
    static_cast<void>(controller->Close());
  }
  environment_.Reset();
}

void WebView::Log(std::wstring_view message, HRESULT hr) const {
  LogPaneDiagnostic(context_.LogIdentity(), message, hr);
}

}  // namespace qv
