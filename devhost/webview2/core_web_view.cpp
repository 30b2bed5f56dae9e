#include "webview2/core_web_view.h"

#include "engines/common/com_guard.h"
#include "webview2/event_args.h"
#include "webview2/recorder.h"
#include "webview2/view_window.h"

namespace qv::devhost {

CoreWebView::CoreWebView(std::shared_ptr<CompletionQueue> queue, HWND parent, std::wstring userDataFolder)
    : queue_(std::move(queue)), parent_(parent), userDataFolder_(std::move(userDataFolder)) {
  settings_ = MakeCom<ViewSettings>();
  number_ = Recorder::Get().Add(*this);
}

CoreWebView::~CoreWebView() {
  Recorder::Get().Remove(*this);
}

void CoreWebView::Bind(const BindPage& bind, ViewWindow& window) {
  window_ = &window;
  backend_ = bind(*this, window);
}

HWND CoreWebView::Window() const {
  return IsClosed() ? nullptr : window_->Handle();
}

ViewInfo CoreWebView::Describe() const {
  const auto& color = appearance_.background;
  const auto background = static_cast<std::uint32_t>(color.A) << 24 |
                          static_cast<std::uint32_t>(color.R) << 16 |
                          static_cast<std::uint32_t>(color.G) << 8 | color.B;
  return {number_,
          parent_,
          IsClosed(),
          appearance_.visible,
          appearance_.bounds,
          background,
          source_.c_str(),
          userDataFolder_.c_str()};
}

void CoreWebView::DropBackend() {
  // First gone, then detached: the window may dispatch messages meanwhile.
  const auto dropped = std::exchange(backend_, nullptr);
  if (dropped) dropped->Detach();
}

void CoreWebView::Close() {
  DropBackend();
  window_ = nullptr;
  pendingNavigation_ = 0;
  pendingScripts_.clear();
  Recorder::Get().EndEvaluations(number_, HRESULT_FROM_WIN32(ERROR_INVALID_STATE));
  navigationStarting_.Clear();
  navigationCompleted_.Clear();
  webMessageReceived_.Clear();
  processFailed_.Clear();
}

template <typename Body>
HRESULT CoreWebView::WhileOpen(Body&& body) noexcept {
  if (!queue_->IsOwnThread()) return RPC_E_WRONG_THREAD;
  if (IsClosed()) return HRESULT_FROM_WIN32(ERROR_INVALID_STATE);
  return GuardCom(std::forward<Body>(body));
}

HRESULT CoreWebView::get_Settings(ICoreWebView2Settings** value) noexcept {
  return WhileOpen([&] { return value ? settings_.CopyTo(value) : E_POINTER; });
}

HRESULT CoreWebView::get_Source(LPWSTR* value) noexcept {
  return WhileOpen([&] { return ReturnText(source_, value); });
}

HRESULT CoreWebView::Navigate(LPCWSTR uri) noexcept {
  return WhileOpen([&]() -> HRESULT {
    if (uri == nullptr) return E_POINTER;
    const std::wstring target(uri);
    if (target.find(L':') == std::wstring::npos) return E_INVALIDARG;
    Recorder::Get().Record(number_, PageItemKind::kNavigate, target);
    queue_->Post([self = ComPtr<CoreWebView>(this), navigation = ++lastNavigation_, target] {
      self->StartNavigation(navigation, target);
    });
    return S_OK;
  });
}

void CoreWebView::StartNavigation(std::uint64_t navigation, const std::wstring& uri) {
  if (IsClosed() || !AnnounceNavigation(navigation, uri)) return;
  BOOL scriptEnabled = TRUE;
  static_cast<void>(settings_->get_IsScriptEnabled(&scriptEnabled));
  backend_->SetScriptEnabled(scriptEnabled != FALSE);
  backend_->Navigate(navigation, uri);
}

bool CoreWebView::AnnounceNavigation(std::uint64_t navigation, const std::wstring& uri) {
  const auto args = MakeCom<NavigationStartingArgs>(navigation, uri);
  navigationStarting_.Raise(this, args.Get());
  if (IsClosed()) return false;
  if (args->IsCancelled()) {
    queue_->Post([self = ComPtr<CoreWebView>(this), navigation] {
      self->CompleteNavigation(navigation, false, COREWEBVIEW2_WEB_ERROR_STATUS_OPERATION_CANCELED);
    });
    return false;
  }
  const auto superseded = std::exchange(pendingNavigation_, navigation);
  if (superseded != 0) {
    CompleteNavigation(superseded, false, COREWEBVIEW2_WEB_ERROR_STATUS_OPERATION_CANCELED);
  }
  return !IsClosed();
}

std::uint64_t CoreWebView::NavigationBegun(const std::wstring& uri) {
  const ComPtr<CoreWebView> self(this);
  const auto navigation = ++lastNavigation_;
  return AnnounceNavigation(navigation, uri) ? navigation : 0;
}

void CoreWebView::SourceChanged(const std::wstring& uri) {
  source_ = uri;
}

void CoreWebView::NavigationFinished(std::uint64_t navigation, bool success,
                                     COREWEBVIEW2_WEB_ERROR_STATUS status) {
  if (navigation != pendingNavigation_) return;
  pendingNavigation_ = 0;
  CompleteNavigation(navigation, success, status);
}

void CoreWebView::CompleteNavigation(std::uint64_t navigation, bool success,
                                     COREWEBVIEW2_WEB_ERROR_STATUS status) {
  const ComPtr<CoreWebView> self(this);
  const auto args = MakeCom<NavigationCompletedArgs>(navigation, success, status);
  navigationCompleted_.Raise(this, args.Get());
}

HRESULT CoreWebView::ExecuteScript(LPCWSTR script,
                                   ICoreWebView2ExecuteScriptCompletedHandler* handler) noexcept {
  return WhileOpen([&]() -> HRESULT {
    if (script == nullptr) return E_POINTER;
    Recorder::Get().Record(number_, PageItemKind::kScript, script);
    const auto number = ++lastScript_;
    if (handler != nullptr) pendingScripts_[number] = handler;
    backend_->ExecuteScript(script, [this, number](HRESULT result, const std::wstring& json) {
      FinishScript(number, result, json);
    });
    return S_OK;
  });
}

void CoreWebView::FinishScript(std::uint64_t script, HRESULT result, const std::wstring& json) {
  auto waiting = pendingScripts_.extract(script);
  if (waiting.empty()) return;
  const ComPtr<CoreWebView> self(this);
  static_cast<void>(waiting.mapped()->Invoke(result, json.c_str()));
}

HRESULT CoreWebView::PostWebMessageAsJson(LPCWSTR json) noexcept {
  return WhileOpen([&]() -> HRESULT {
    if (json == nullptr) return E_POINTER;
    if (!AreMessagesEnabled()) return E_ACCESSDENIED;
    const bool accepted = IsJson(json);
    Recorder::Get().Record(number_, accepted ? PageItemKind::kJson : PageItemKind::kRejected, json);
    if (!accepted) return E_INVALIDARG;
    backend_->PostJson(json);
    return S_OK;
  });
}

void CoreWebView::DeliverLater(std::wstring text, bool isString, const wchar_t* source) {
  const bool current = source == nullptr;
  queue_->Post([self = ComPtr<CoreWebView>(this), text = std::move(text), isString, current,
                given = std::wstring(current ? L"" : source)] {
    const auto& from = current ? self->source_ : given;
    self->Receive(from, text, isString);
  });
}

void CoreWebView::StringReceived(const std::wstring& source, const std::wstring& text) {
  Recorder::Get().Record(number_, PageItemKind::kMessage, text);
  Receive(source, text, true);
}

void CoreWebView::JsonReceived(const std::wstring& source, const std::wstring& json) {
  Recorder::Get().Record(number_, PageItemKind::kMessage, json);
  Receive(source, json, false);
}

void CoreWebView::Receive(const std::wstring& source, const std::wstring& text, bool isString) {
  if (IsClosed() || !AreMessagesEnabled()) return;
  const ComPtr<CoreWebView> self(this);
  const auto args = MakeCom<WebMessageArgs>(source, text, isString);
  webMessageReceived_.Raise(this, args.Get());
}

bool CoreWebView::Evaluate(std::uint64_t evaluation, const std::wstring& script) {
  return backend_->Evaluate(script, [evaluation](HRESULT result, const std::wstring& text) {
    Recorder::Get().FinishEvaluation(evaluation, result, text);
  });
}

void CoreWebView::PageProcessLost() {
  FailWaiting(COREWEBVIEW2_PROCESS_FAILED_KIND_RENDER_PROCESS_EXITED);
}

void CoreWebView::BrowserProcessLost() {
  // From here on the view answers as a closed one, but its handlers stay until it is closed.
  DropBackend();
  FailWaiting(COREWEBVIEW2_PROCESS_FAILED_KIND_BROWSER_PROCESS_EXITED);
}

void CoreWebView::FailWaiting(COREWEBVIEW2_PROCESS_FAILED_KIND kind) {
  const ComPtr<CoreWebView> self(this);
  const HRESULT lost = HRESULT_FROM_WIN32(ERROR_PROCESS_ABORTED);
  Recorder::Get().EndEvaluations(number_, lost);
  while (!pendingScripts_.empty())
    FinishScript(pendingScripts_.begin()->first, lost, std::wstring());
  const auto navigation = std::exchange(pendingNavigation_, 0);
  if (navigation != 0) CompleteNavigation(navigation, false, COREWEBVIEW2_WEB_ERROR_STATUS_UNEXPECTED_ERROR);
  const auto args = MakeCom<ProcessFailedArgs>(kind);
  processFailed_.Raise(this, args.Get());
}

bool CoreWebView::AreMessagesEnabled() const {
  BOOL enabled = FALSE;
  return SUCCEEDED(settings_->get_IsWebMessageEnabled(&enabled)) && enabled != FALSE;
}

HRESULT CoreWebView::add_NavigationStarting(ICoreWebView2NavigationStartingEventHandler* handler,
                                            EventRegistrationToken* token) noexcept {
  return WhileOpen([&] { return navigationStarting_.Add(handler, token); });
}

HRESULT CoreWebView::remove_NavigationStarting(EventRegistrationToken token) noexcept {
  return WhileOpen([&] { return navigationStarting_.Remove(token), S_OK; });
}

HRESULT CoreWebView::add_NavigationCompleted(ICoreWebView2NavigationCompletedEventHandler* handler,
                                             EventRegistrationToken* token) noexcept {
  return WhileOpen([&] { return navigationCompleted_.Add(handler, token); });
}

HRESULT CoreWebView::remove_NavigationCompleted(EventRegistrationToken token) noexcept {
  return WhileOpen([&] { return navigationCompleted_.Remove(token), S_OK; });
}

HRESULT CoreWebView::add_WebMessageReceived(ICoreWebView2WebMessageReceivedEventHandler* handler,
                                            EventRegistrationToken* token) noexcept {
  return WhileOpen([&] { return webMessageReceived_.Add(handler, token); });
}

HRESULT CoreWebView::remove_WebMessageReceived(EventRegistrationToken token) noexcept {
  return WhileOpen([&] { return webMessageReceived_.Remove(token), S_OK; });
}

HRESULT CoreWebView::add_ProcessFailed(ICoreWebView2ProcessFailedEventHandler* handler,
                                       EventRegistrationToken* token) noexcept {
  return WhileOpen([&] { return processFailed_.Add(handler, token); });
}

HRESULT CoreWebView::remove_ProcessFailed(EventRegistrationToken token) noexcept {
  return WhileOpen([&] { return processFailed_.Remove(token), S_OK; });
}

}  // namespace qv::devhost
