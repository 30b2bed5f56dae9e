#include "panel/workspace_window.h"

#include "foundation/catalog.h"
#include "foundation/host_session.h"
#include "foundation/logging.h"
#include "foundation/settings.h"
#include "foundation/text.h"
#include "panel/page_url.h"
#include "panel/panel_state_transfer.h"

namespace qv {
namespace {

/// Wide enough for two columns, small enough for a laptop's screen. Pixels at 96 DPI.
constexpr SIZE kSize = {1080, 760};

}  // namespace

void WorkspaceWindow::Open(std::wstring_view page) {
  closing_ = false;
  if (frame_.IsOpen()) {
    frame_.Raise();
    if (page.empty() || page == page_) return;
    page_ = page;
    if (view_.IsReady()) Navigate();
    return;
  }
  // Only a page asks for the workspace, so its browser is there, unless it has just been lost.
  if (paneView_.Environment() == nullptr) return;
  page_ = page;
  takesState_ = true;
  if (!frame_.Create(GetCatalogText(L"msg.paneTitle"), kSize, context_.Window())) return;
  view_.StartIn(paneView_.Environment(), frame_.Handle());
  events_.OnWorkspaceOpened();
}

void WorkspaceWindow::Focus() {
  Open({});
}

void WorkspaceWindow::Navigate() {
  view_.Navigate(BuildPanelUrl({.origin = HostSession::Get().Endpoint().Origin(),
                                .page = page_,
                                .mode = {},
                                .surface = L"workspace",
                                .tick = GetTickCount64(),
                                .wps = IsWpsProcess(),
                                .paneNumber = context_.Number(),
                                .uiLang = GetUiLanguage()}));
}

void WorkspaceWindow::OnNavigated() {
  if (const std::wstring shown = PanelPageFromUrl(view_.Source()); !shown.empty()) page_ = shown;
  if (!std::exchange(takesState_, false)) return;
  static_cast<void>(TransferPanelState(paneView_, view_, [this](bool handed) {
    if (handed) events_.OnWorkspaceStateHanded();
  }));
}

void WorkspaceWindow::OnWebViewFailed(const wchar_t* step, HRESULT hr) {
  LogPaneDiagnostic(context_.LogIdentity(), Concat(L"Workspace failed step=", step), hr);
  CloseLater();
}

void WorkspaceWindow::Close() {
  if (!frame_.IsOpen() || closing_) return;
  closing_ = true;
  frame_.Hide();
  const bool asked = TransferPanelState(view_, paneView_, [this](bool handed) {
    if (handed) events_.OnWorkspaceStateHanded();
    CloseLater();
  });
  if (!asked) FinishClosing();
}

void WorkspaceWindow::CloseLater() {
  // A view is never closed from inside its own event. Refused only while the pane is closing, which ends the
  // window itself.
  closing_ = true;
  static_cast<void>(context_.Tasks().PostFunction([this] {
    // Meanwhile it may have been asked for again.
    if (closing_) FinishClosing();
  }));
}

void WorkspaceWindow::FinishClosing() {
  CloseNow();
  events_.OnWorkspaceClosed();
}

void WorkspaceWindow::CloseNow() {
  closing_ = false;
  view_.Close();
  frame_.Destroy();
}

}  // namespace qv
