#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "foundation/access_tokens.h"
#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "panel/panel_actions.h"
#include "panel/web_view.h"

namespace qv {

/// The way between the pages of one pane and the native code: the pane's own page and, while the workspace
/// window is open, that window's page, which gets the same scripts and messages. A page that is not one of
/// the service neither hears nor is heard. UI thread, except `PostPanelScript`.
class PanelBridge final : public PanelOutput {
 public:
  /// `actions` carries out what the page asks for and need not be constructed yet. It, the views and the
  /// tokens are there whenever a message or a posted script runs; `context` is shared with all that works for
  /// the pane.
  PanelBridge(std::shared_ptr<PaneContext> context, WebView& paneView, WebView& workspaceView,
              const AccessTokens& tokens, PanelActions& actions)
      : context_(std::move(context)),
        paneView_(paneView),
        workspaceView_(workspaceView),
        tokens_(tokens),
        actions_(actions) {}

  /// A message arrived inside the browser's event. It is routed as a posted task, because an action may pump
  /// messages or call into the host; the order of messages is kept. A page that is not the service's own is
  /// refused with one log line.
  void OnWebMessage(const std::wstring& source, const std::optional<std::wstring>& text);

  /// Routes one message by its action.
  void OnJsMessage(const std::wstring& text);

  void RunPanelScript(const std::wstring& script) override;
  void PostPanelJson(const std::wstring& json) override;
  void PostPanelScript(const std::wstring& script) override;

  /// Hands the pane's token to the pages.
  void SendAccessTokenToPanel();

 private:
  std::shared_ptr<PaneContext> context_;
  WebView& paneView_;
  WebView& workspaceView_;
  const AccessTokens& tokens_;
  PanelActions& actions_;
};

}  // namespace qv
