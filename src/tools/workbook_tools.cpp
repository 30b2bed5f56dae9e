#include "tools/workbook_tools.h"

#include <utility>

#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/tool_result.h"
#include "tools/tool_table.h"

namespace qv {

WorkbookTools::WorkbookTools(std::shared_ptr<PaneContext> pane, const TargetContext& target,
                             PanelOutput& output)
    : pane_(std::move(pane)),
      target_(target),
      output_(output),
      dispatcher_(
          std::make_shared<ToolDispatcher>(pane_, [this](std::wstring_view action, const std::wstring& json) {
            return RunWorkbookTool(action, json);
          })) {}

std::wstring WorkbookTools::RunWorkbookTool(std::wstring_view action, const std::wstring& json) {
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
  // Refused only when the pane goes away, and its page with it.
  static_cast<void>(pane_->Tasks().PostFunction([this, action, message] { RunAndReply(action, message); }));
}

void WorkbookTools::RunAndReply(const std::wstring& action, const std::wstring& message) {
  const ToolRunner run = [this](std::wstring_view name, const std::wstring& json) {
    return RunWorkbookTool(name, json);
  };
  const std::wstring result = RunCaught(L"autofill", run, action, message);
  PaneLog(Concat(L"HandleAutofillMessage result action=", action, L" ok=", BoolWord(IsUnderstood(result)),
                 L" payload=", result, L"\r\n"));
  Reply(message, result);
}

void WorkbookTools::Reply(const std::wstring& message, const std::wstring& result) {
  output_.RunPanelScript(
      BuildReplyScript(JsonGetString(message, L"requestId"), IsUnderstood(result), result));
}

}  // namespace qv
