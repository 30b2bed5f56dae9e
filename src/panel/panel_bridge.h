#pragma once

#include <memory>
#include <optional>
#include <string>

#include "foundation/access_tokens.h"
#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "panel/panel_actions.h"
#include "panel/web_view.h"

namespace qv {

/// The only way between the page and the native code of one pane. UI thread, except `PostPanelScript`.
class PanelBridge final : public PanelOutput {
 public:
  /// `actions` carries out what the page asks for and need not be constructed yet. It, the view and the
  /// tokens are there whenever a message or a posted script runs; `context` is shared with all that works for
  /// the pane.
  PanelBridge(std::shared_ptr<PaneContext> context, WebView& view, const AccessTokens& tokens,
              PanelActions& actions)
      : context_(std::move(context)), view_(view), tokens_(tokens), actions_(actions) {}

  /// A message arrived inside the browser's event. It is routed as a posted task, because an action may pump
  /// messages or call into the host; the order of messages is kept. A page that is not the service's own is
  /// refused with one log line.
  void OnWebMessage(const std::wstring& source, const std::optional<std::wstring>& text);

  /// Routes one message by its action.
  void OnJsMessage(const std::wstring& text);

  void RunPanelScript(const std::wstring& script) override;
  void PostPanelJson(const std::wstring& json) override;
  void PostPanelScript(const std::wstring& script) override;

  /// Hands the pane's token to the page, unless the page that is shown is not the service's own.
  void SendAccessTokenToPanel();

 private:
  std::shared_ptr<PaneContext> context_;
  WebView& view_;
  const AccessTokens& tokens_;
  PanelActions& actions_;
};

}  // namespace qv
