#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "tools/tool_context.h"
#include "tools/tool_dispatcher.h"
#include "tools/undo_log.h"
#include "workbook/target_context.h"

namespace qv {

/// The workbook tools of one pane and the two ways to them: messages of the page, and calls of other threads.
/// Host UI thread but for what the dispatcher says.
class WorkbookTools {
 public:
  /// `target` and `output` outlive the tools.
  WorkbookTools(std::shared_ptr<PaneContext> pane, TargetContext& target, PanelOutput& output);

  /// The target has its Application now.
  void Connect() { dispatcher_->SetConnected(target_.Application() != nullptr); }
  /// Wakes whoever waits for a tool; ahead of the target's release.
  void Close() { dispatcher_->Close(); }

  /// Runs a tool here and now, on the target as it is now: the workbook of a window that the pane is bound to
  /// may have changed since the last one.
  [[nodiscard]] std::wstring RunWorkbookTool(std::wstring_view action, const std::wstring& json);

  /// Runs the tool that a message of the page names, once the host has worked off what was posted before, and
  /// replies to the page. `message` is the argument text too.
  void HandleAutofillMessage(const std::wstring& action, const std::wstring& message);

  /// For calls from other threads, which may keep it.
  [[nodiscard]] const std::shared_ptr<ToolDispatcher>& Dispatcher() const { return dispatcher_; }

 private:
  void RunAndReply(const std::wstring& action, const std::wstring& message);
  void Reply(const std::wstring& message, const std::wstring& result);

  std::shared_ptr<PaneContext> pane_;
  TargetContext& target_;
  PanelOutput& output_;
  UndoLog undo_;
  std::shared_ptr<ToolDispatcher> dispatcher_;
};

}  // namespace qv
