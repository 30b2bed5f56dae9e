#include "panel/panel_bridge.h"

#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "panel/own_page.h"
#include "panel/page_scripts.h"

namespace qv {
namespace {

/// Longest part of a foreign address that the log keeps, in UTF-16 units.
constexpr std::size_t kLoggedSourceLength = 200;

}  // namespace

void PanelBridge::OnWebMessage(const std::wstring& source, const std::optional<std::wstring>& text) {
  if (context_->IsClosing()) return;
  if (!IsOwnPage(source)) {
    const auto shown = std::wstring_view(source).substr(0, kLoggedSourceLength);
    LogPaneDiagnostic(context_->LogIdentity(), Concat(L"WebMessageReceived refused source=", shown),
                      E_ACCESSDENIED);
    return;
  }
  LogPaneDiagnostic(context_->LogIdentity(), L"WebMessageReceived", S_OK);
  if (!text) return;
  if (!context_->Tasks().PostFunction([this, message = *text] { OnJsMessage(message); })) {
    LogPaneDiagnostic(context_->LogIdentity(), L"WebMessageReceived dropped", E_ABORT);
  }
}

void PanelBridge::OnJsMessage(const std::wstring& text) {
  PanelMessage message{JsonGetString(text, L"action"), text};
  if (message.action.empty()) return;
  PaneLog(Concat(L"OnJsMessage action=", message.action, L" nativeTokenLen=", NativeAccessToken::Get().size(),
                 L"\r\n"));
  RoutePanelMessage(actions_, message);
}

void PanelBridge::RunPanelScript(const std::wstring& script) {
  for (WebView* view : {&paneView_, &workspaceView_}) {
    if (ShowsOwnPage(*view)) view->ExecuteScript(script);
  }
}

void PanelBridge::PostPanelJson(const std::wstring& json) {
  for (WebView* view : {&paneView_, &workspaceView_}) {
    if (ShowsOwnPage(*view)) view->PostJson(json);
  }
}

void PanelBridge::PostPanelScript(const std::wstring& script) {
  // Refused when the page is going away, or when the host does not get round to its messages at all; a
  // script that reports progress is not worth more than a try.
  static_cast<void>(context_->Tasks().PostFunction([this, script] { RunPanelScript(script); }));
}

void PanelBridge::SendAccessTokenToPanel() {
  PostPanelJson(AccessTokenMessage(tokens_.Pane()));
}

}  // namespace qv
