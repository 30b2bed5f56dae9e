#pragma once

#include <string>
#include <string_view>

namespace qv {

/// The way to the panel page (and the workspace page when it is open) from anywhere above it.
class PanelOutput {
 public:
  virtual ~PanelOutput() = default;
  /// Runs a script in the page. UI thread; ignored while there is no page.
  virtual void RunPanelScript(const std::wstring& script) = 0;
  /// Posts a JSON text to the page. UI thread; ignored while there is no page.
  virtual void PostPanelJson(const std::wstring& json) = 0;
  /// `RunPanelScript` from any thread, in posted order; dropped when the pane is closing.
  virtual void PostPanelScript(const std::wstring& script) = 0;
};

/// The script that answers a request of the page: its id, success, and data (a JSON text; empty means null).
[[nodiscard]] std::wstring BuildReplyScript(std::wstring_view requestId, bool ok, std::wstring_view data);

}  // namespace qv
