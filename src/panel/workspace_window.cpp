#include "panel/workspace_window.h"

#include <utility>

#include "foundation/catalog.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "panel/panel_state_transfer.h"

namespace qv {
namespace {

/// Wide enough for two columns, small enough for a laptop's screen. Pixels at 96 DPI.
constexpr SIZE kSize = {1080, 760};

constexpr std::wstring_view kSurface = L"workspace";

/// How long the closing waits for a page that may hang.
constexpr UINT kReturnLimitMs = 2000;

}  // namespace

void WorkspaceWindow::Open(std::wstring_view page) {
  if (phase_ == Phase::kLost) CloseNow();
  if (phase_ == Phase::kClosed) {
    OpenAnew(page);
    return;
  }
  if (phase_ == Phase::kReturning) {
    phase_ = Phase::kOpen;
    frame_.StopTimer();
  }
  frame_.Raise();
  if (!page.empty() && page != navigator_.CurrentPage()) navigator_.NavigateToPage(page, {}, kSurface);
}

void WorkspaceWindow::OpenAnew(std::wstring_view page) {
  // A page asks for the workspace, so its browser is there, unless it was lost just now.
  ICoreWebView2Environment* const environment = paneView_.Environment();
  if (environment == nullptr || !frame_.Create(GetCatalogText(L"msg.paneTitle"), kSize, context_.Window())) {
    LogPaneDiagnostic(context_.LogIdentity(), L"Workspace not opened", E_FAIL);
    return;
  }
  phase_ = Phase::kTaking;
  navigator_.NavigateToPage(page, {}, kSurface);
  view_.StartIn(environment, frame_.Handle());
}

void WorkspaceWindow::OnWebViewReady() {
  events_.OnWorkspaceOpened();
  navigator_.OnViewReady();
}

void WorkspaceWindow::OnNavigated() {
  navigator_.TakePageBack();
  if (navigator_.ShowPendingPage() && phase_ == Phase::kTaking) TakeState();
}

void WorkspaceWindow::TakeState() {
  const bool asked = ExportPanelState(paneView_, [this](const std::optional<std::wstring>& state) {
    if (phase_ != Phase::kTaking) return;
    phase_ = Phase::kOpen;
    if (!state) return;
    ImportPanelState(view_, *state);
    events_.OnWorkspaceStateHanded();
  });
  if (!asked) phase_ = Phase::kOpen;
}

void WorkspaceWindow::OnFrameClosing() {
  // Refused only when the pane goes away or its queue is full; the user tries again.
  static_cast<void>(context_.Tasks().PostFunction([this] { Close(); }));
}

void WorkspaceWindow::Close() {
  if (phase_ == Phase::kClosed || phase_ == Phase::kReturning) return;
  const bool hasState = phase_ == Phase::kOpen;
  phase_ = Phase::kReturning;
  frame_.Hide();
  // A page that has not taken over the pane's state has nothing to hand back.
  const bool asked =
      hasState &&
      ExportPanelState(view_, [this, closing = ++closing_](const std::optional<std::wstring>& state) {
        if (phase_ == Phase::kReturning && closing == closing_) ReturnState(state);
      });
  if (asked) {
    frame_.StartTimer(kReturnLimitMs);
  } else {
    Finish();
  }
}

void WorkspaceWindow::ReturnState(const std::optional<std::wstring>& state) {
  if (state) {
    ImportPanelState(paneView_, *state);
    events_.OnWorkspaceStateHanded();
  }
  FinishLater();
}

void WorkspaceWindow::OnWebViewFailed(const wchar_t* step, HRESULT hr) {
  LogPaneDiagnostic(context_.LogIdentity(), Concat(L"Workspace failed step=", step), hr);
  Lose();
}

void WorkspaceWindow::Lose() {
  phase_ = Phase::kLost;
  FinishLater();
}

void WorkspaceWindow::FinishLater() {
  // A view is never closed from inside its own event. A refused task leaves a hidden or empty window, which
  // the next request or the pane's end takes away.
  static_cast<void>(context_.Tasks().PostFunction([this] {
    // Meanwhile it may have been asked for again.
    if (phase_ == Phase::kReturning || phase_ == Phase::kLost) Finish();
  }));
}

void WorkspaceWindow::Finish() {
  CloseNow();
  events_.OnWorkspaceClosed();
}

void WorkspaceWindow::OnFrameDestroyed() {
  // Somebody else destroyed it when a phase is left.
  if (std::exchange(phase_, Phase::kClosed) == Phase::kClosed) return;
  view_.Close();
  events_.OnWorkspaceClosed();
}

void WorkspaceWindow::CloseNow() {
  phase_ = Phase::kClosed;
  view_.Close();
  frame_.Destroy();
}

}  // namespace qv
