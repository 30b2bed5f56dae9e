#include "tools/workbook_tools.h"

#include <new>
#include <utility>

#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/tool_result.h"
#include "tools/tool_table.h"
#include "tools/tool_targets.h"

namespace qv {

WorkbookTools::WorkbookTools(std::shared_ptr<PaneContext> pane, TargetContext& target, PanelOutput& output)
    : pane_(std::move(pane)),
      target_(target),
      output_(output),
      dispatcher_(
          std::make_shared<ToolDispatcher>(pane_, [this](std::wstring_view action, const std::wstring& json) {
            return RunWorkbookTool(action, json);
          })) {}

std::wstring WorkbookTools::RunWorkbookTool(std::wstring_view action, const std::wstring& json) {
  if (target_.Application() != nullptr) RefreshTarget(target_);
  return qv::RunWorkbookTool({target_, *pane_, undo_}, action, json);
}

void WorkbookTools::HandleAutofillMessage(const std::wstring& action, const std::wstring& message) {
  PaneLog(Concat(L"HandleAutofillMessage action=", action, L" requestId=",
                 JsonGetString(message, L"requestId"), L"\r\n"));
  if (target_.Application() == nullptr) {
    PaneLog(L"HandleAutofillMessage error: m_appDisp null\r\n");
    Reply(message, ErrorResult(kNotConnectedText));
    return;
  }
  const bool posted = pane_->Tasks().PostFunction([this, action, message] {
    dispatcher_->Turns().Run([this, action, message] { RunAndReply(action, message); });
  });
  // Refused when the pane goes away, and its page with it, or when the thread's message queue is full.
  if (!posted && !pane_->IsClosing()) Reply(message, ErrorResult(kTimedOutText));
}

void WorkbookTools::RunAndReply(const std::wstring& action, const std::wstring& message) {
  const ToolRunner run = [this](std::wstring_view name, const std::wstring& json) {
    return RunWorkbookTool(name, json);
  };
  const std::wstring result = RunCaught(L"autofill", run, action, message);
  try {
    PaneLog(Concat(L"HandleAutofillMessage result action=", action, L" ok=", BoolWord(IsUnderstood(result)),
                   L" payload=", result, L"\r\n"));
    Reply(message, result);
  } catch (const std::bad_alloc&) {
    // The result was too large to be carried; a page that waits for it shall not wait on.
    Reply(message, ErrorResult(kComErrorText));
  }
}

void WorkbookTools::Reply(const std::wstring& message, const std::wstring& result) {
  output_.RunPanelScript(
      BuildReplyScript(JsonGetString(message, L"requestId"), IsUnderstood(result), result));
}

}  // namespace qv
