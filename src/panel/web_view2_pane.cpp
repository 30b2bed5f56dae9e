#include "panel/web_view2_pane.h"

#include "foundation/guard.h"
#include "foundation/host_session.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "panel/page_scripts.h"
#include "panel/pane_registry.h"
#include "panel/pane_timers.h"
#include "panel/web_view_failure.h"

namespace qv {
namespace {

/// A handle in the form "%p".
Hex HandleDigits(HWND window) {
  return Hex{static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(window)), 16, true};
}

}  // namespace

CWebView2Pane::CWebView2Pane()
    : context_(std::make_shared<PaneContext>(PaneRegistry::NextNumber())),
      view_(*context_, *this),
      workspace_(*context_, view_, *this),
      preview_(*context_, view_),
      navigator_(*context_, view_),
      bridge_(context_, view_, workspace_.View(), tokens_, actions_),
      run_(context_, bridge_, target_, tokens_, session_),
      quickTranslator_(context_, bridge_),
      selectionPreview_(target_, session_, *context_, bridge_),
      tools_(context_, target_, bridge_),
      images_(context_, target_, bridge_, tools_.Dispatcher()->Turns()),
      agents_(context_, bridge_, tools_.Dispatcher()),
      actions_(context_, bridge_, workspace_, preview_, navigator_, tokens_, target_, run_, quickTranslator_,
               selectionPreview_, tools_, images_, agents_),
      window_(*this) {
  PaneRegistry::Add(*this);
  tokens_.OnStore([this](const std::wstring& token) { agents_.SetAccessToken(token); });
}

CWebView2Pane::~CWebView2Pane() {
  PaneRegistry::Remove(*this);
  Guard(L"CWebView2Pane", [this] { OnClose(); });
}

void CWebView2Pane::FinalConstruct() {
  const HostSession& host = HostSession::Get();
  Log(L"FinalConstruct (excel)", S_OK);
  Log(Concat(L"FinalConstruct pane=", context_->Number(), L" target ", host.Endpoint().host), S_OK);
  target_.SetApplication(host.Application());
  tools_.Connect();
  const HRESULT hr =
      hostEvents_.Subscribe(host.Application().Get(), [this](const HostEvent& event) { OnHostEvent(event); });
  if (FAILED(hr)) Log(L"DispEventAdvise Excel AppEvents failed (selection preview may lag)", hr);
}

void CWebView2Pane::OnVerb(LONG verb, HWND parent) {
  Log(Concat(L"DoVerb verb=", verb, L" hwndParent=0x", HandleDigits(parent)), S_OK);
}

bool CWebView2Pane::ShowControlWindow(const wchar_t* operation, HWND parent, const RECT& position) {
  if (window_.Handle() == nullptr) return CreateControlWindow(operation, parent, position);
  if (!IsRectEmpty(&position)) PlaceControlWindow(parent, position);
  window_.Show();
  return true;
}

void CWebView2Pane::PlaceControlWindow(HWND parent, const RECT& position) {
  window_.Place(parent, position);
  context_->SetWindows(window_.Handle(), GetParent(window_.Handle()));
}

bool CWebView2Pane::CreateControlWindow(const wchar_t* operation, HWND parent, const RECT& position) {
  HRESULT hr = S_OK;
  if (context_->IsClosing()) {
    // A pane whose window is gone does not start again; its container makes a new control.
    hr = HRESULT_FROM_WIN32(ERROR_INVALID_STATE);
  } else if (!window_.Create(parent, position)) {
    const DWORD error = GetLastError();
    hr = error != ERROR_SUCCESS ? HRESULT_FROM_WIN32(error) : E_FAIL;
  }
  Log(Concat(L"Create in ", operation, SUCCEEDED(hr) ? L" OK" : L" failed"), hr);
  return SUCCEEDED(hr);
}

void CWebView2Pane::OnWindowCreated(HWND window, HWND parent) {
  context_->SetWindows(window, parent);
  context_->Tasks().Open(window);
  Log(L"WM_CREATE", S_OK);
  SetTimer(window, kPaneWidthTimer, kPaneWidthTimerMs, nullptr);
  view_.Start(window);
}

void CWebView2Pane::OnWindowTimer(UINT_PTR timer) {
  if (timer == kPreviewTimer) {
    KillTimer(window_.Handle(), kPreviewTimer);
    // Refused only when the pane goes away or the host does not read its messages; the next event brings the
    // next preview.
    static_cast<void>(context_->Tasks().PostFunction([this] { OnPreviewTick(); }));
  }
  // One at a time: while the host shows a box for long, ticks must not pile up.
  if (timer != kPaneWidthTimer || widthTickPosted_) return;
  widthTickPosted_ = context_->Tasks().PostFunction([this] { OnWidthTick(); });
}

void CWebView2Pane::OnWidthTick() {
  PaneRegistry::Tick(*this);
  view_.Fit();
  view_.FollowWindow();
  // Not before: a host that runs messages while its pane is resized would tick within the tick.
  widthTickPosted_ = false;
}

bool CWebView2Pane::WantsSelectionPreview() const {
  const std::wstring& page = navigator_.CurrentPage();
  if (earlyShutdownDone_ || run_.IsRunning()) return false;
  return page == kRootPage || page == kQuickTranslatePage || page == kImageTranslatePage;
}

void CWebView2Pane::AwaitSelectionAtRest() {
  const HWND window = window_.Handle();
  // Set again, the timer starts anew. The event itself asks the host nothing: a macro may change thousands of
  // cells, each with its event.
  if (window != nullptr && WantsSelectionPreview()) {
    SetTimer(window, kPreviewTimer, kPreviewTimerMs, nullptr);
  }
}

void CWebView2Pane::OnPreviewTick() {
  if (!WantsSelectionPreview()) return;
  if (navigator_.CurrentPage() == kImageTranslatePage) {
    images_.PushSelectionPreview();
  } else {
    selectionPreview_.Push();
  }
}

void CWebView2Pane::OnWindowTask(LPARAM task) {
  // The task may close the pane: neither the control nor its queue may go away underneath it.
  const ComPtr<OleControl> keptAlive(this);
  const std::shared_ptr<PaneContext> context = context_;
  context->Tasks().OnMessage(task);
}

void CWebView2Pane::OnWindowDestroyed() {
  // Letting go of the host's objects may make the container let go of the control.
  const ComPtr<OleControl> keptAlive(this);
  Shutdown();
  context_->SetWindows(nullptr, nullptr);
}

void CWebView2Pane::OnWebMessage(const std::wstring& source, const std::optional<std::wstring>& text) {
  bridge_.OnWebMessage(source, text);
}

void CWebView2Pane::OnNavigated() {
  navigator_.TakePageBack();
  // Before another page is asked for: from then on the page that is shown is a page that is left.
  bridge_.SendAccessTokenToPanel();
  if (!navigator_.ShowPendingPage()) return;
  if (workspace_.IsOpen()) OnWorkspaceOpened();
  run_.AskPageAgain();
  if (navigator_.IsShowing(kRootPage)) run_.PushState();
}

void CWebView2Pane::OnWebViewFailed(const wchar_t* step, HRESULT hr) {
  failed_ = true;
  ShowWebView2Failure(context_, step, hr);
}

void CWebView2Pane::OnBrowserLost() {
  failed_ = true;
  // Nobody can watch, pause or stop the run any more. Refused only when the pane goes away, which ends it
  // too.
  static_cast<void>(context_->Tasks().PostFunction([this] { run_.Cancel(); }));
  ShowBrowserLoss(context_);
}

void CWebView2Pane::OnPageLost() {
  Log(L"ProcessFailed page", HRESULT_FROM_WIN32(ERROR_PROCESS_ABORTED));
  // From outside the browser's event.
  const bool posted = context_->Tasks().PostFunction([this] {
    if (!navigator_.Reload()) OnBrowserLost();
  });
  if (!posted) failed_ = true;
}

void CWebView2Pane::OnWorkspaceMessage(const std::wstring& source, const std::optional<std::wstring>& text) {
  bridge_.OnWebMessage(source, text);
}

void CWebView2Pane::OnWorkspaceOpened() {
  bridge_.RunPanelScript(std::wstring(kWorkspaceOpenScript));
}

void CWebView2Pane::OnWorkspaceClosed() {
  bridge_.RunPanelScript(std::wstring(kWorkspaceClosedScript));
}

void CWebView2Pane::NavigateToPage(std::wstring_view page, std::wstring_view mode) {
  navigator_.NavigateToPage(page, mode, {});
}

void CWebView2Pane::SetPanelMode(std::wstring_view mode) {
  navigator_.SetMode(mode);
  bridge_.PostPanelJson(SetModeMessage(mode));
  bridge_.RunPanelScript(SetModeScript(mode));
}

void CWebView2Pane::OnHostEvent(const HostEvent& event) {
  if (event.kind != HostEventKind::kWindowActivated) AwaitSelectionAtRest();
  if (event.kind != HostEventKind::kSheetActivated) return;
  // The host may close the pane while it is asked.
  const ComPtr<OleControl> keptAlive(this);
  // Sheets of other workbooks come and go without concerning this pane.
  if (event.sheet != nullptr && !SheetBelongsToTarget(event.sheet.Get(), target_.Pinned())) return;
  run_.OnSheetActivated(navigator_.CurrentPage() == kRootPage);
}

void CWebView2Pane::BeginShutdownEarly() {
  if (earlyShutdownDone_) return;
  earlyShutdownDone_ = true;
  if (const HWND window = window_.Handle()) {
    for (const UINT_PTR timer : {kPaneWidthTimer, kPreviewTimer})
      KillTimer(window, timer);
  }
  run_.BeginShutdownEarly();
  hostEvents_.Unsubscribe();
  // First whoever waits for a tool, then who waits for the waiting ones.
  tools_.Close();
  images_.Close();
  agents_.Close();
  target_.ReleaseReferences();
}

void CWebView2Pane::Shutdown() {
  if (context_->IsClosing()) return;
  context_->MarkClosing();
  context_->Tasks().Close();
  BeginShutdownEarly();
  preview_.Close();
  workspace_.CloseNow();
  view_.Close();
}

void CWebView2Pane::OnClose() {
  Shutdown();
  window_.Destroy();
}

void CWebView2Pane::Log(std::wstring_view message, HRESULT hr) const {
  LogPaneDiagnostic(context_->LogIdentity(), message, hr);
}

}  // namespace qv
