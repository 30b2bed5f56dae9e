#include "addin/blank_rows_command.h"

#include <optional>
#include <string>
#include <utility>

#include "addin/blank_rows_message.h"
#include "addin/disabled_windows.h"
#include "addin/host_message.h"
#include "addin/host_window.h"
#include "foundation/catalog.h"
#include "foundation/flag_scope.h"
#include "foundation/guard.h"
#include "foundation/host_session.h"
#include "foundation/logging.h"
#include "foundation/settings.h"
#include "tools/delete_blank_rows.h"
#include "workbook/excel_window.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

constexpr UINT kNextTryMs = 1000;
constexpr int kTries = 60;

/// Calls back at its end, whatever ends it.
template <typename Body>
class AtEnd {
 public:
  explicit AtEnd(Body body) : body_(std::move(body)) {}
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;
  ~AtEnd() { Guard(L"BlankRowsCommand", body_); }

 private:
  Body body_;
};

/// The other documents wait too: a cell that is edited in one keeps the host from everything.
bool Ask(std::wstring_view language, std::int32_t found) {
  const HWND owner = BoxOwner();
  const DisabledWindows others(nullptr, owner);
  const std::wstring text = BlankRowQuestion(language, found);
  const std::wstring title = CatalogText(language, L"blank.excel.title");
  return MessageBoxW(owner, text.c_str(), title.c_str(), MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

}  // namespace

void BlankRowsCommand::Press(IDispatch* control) {
  PaneLog(L"Excel DeleteBlankRowsClicked\r\n");
  if (running_) return;
  const FlagScope running(running_);
  released_ = false;
  const std::wstring language = GetUiLanguage();
  const BlankRowResult result = Remove(control, language);
  if (released_) return;
  if (const std::optional<BlankRowMessage> message = BlankRowOutcome(language, result))
    ShowMessage(BoxOwner(), message->text, MB_OK | message->icon);
}

BlankRowResult BlankRowsCommand::Remove(IDispatch* control, std::wstring_view language) {
  // What an earlier press still owes would otherwise be put back under the question.
  nextTry_.Stop();
  const AtEnd later([this] {
    if (!released_) TryLater(kTries);
  });
  const ComPtr<IDispatch> application = HostSession::Get().Application();
  const ExcelWindow window = ExcelWindow::ResolveForInvocation(application.Get(), control);
  return DeleteBlankRows(application.Get(), window, preview_,
                         [&](std::int32_t found) { return Confirm(language, found); });
}

bool BlankRowsCommand::Confirm(std::wstring_view language, std::int32_t found) const {
  // The connection may end inside the host's calls ahead of the box, and while that is open.
  return !released_ && Ask(language, found) && !released_;
}

void BlankRowsCommand::TryLater(int triesLeft) {
  // Both are asked: neither waits for the other.
  const bool lookBack = preview_.Restore();
  const bool stateBack = RestoreOwedHostState(HostSession::Get().Application().Get());
  if ((lookBack && stateBack) || triesLeft == 0) return;
  // Without a timer the next press does it.
  static_cast<void>(nextTry_.Start(nullptr, kNextTryMs, [this, triesLeft] { TryLater(triesLeft - 1); }));
}

void BlankRowsCommand::Release() {
  released_ = true;
  nextTry_.Stop();
  static_cast<void>(preview_.Restore());
  preview_.Forget();
}

}  // namespace qv
