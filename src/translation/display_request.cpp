#include "translation/display_request.h"

#include <optional>
#include <utility>
#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/display_passes.h"
#include "translation/restore_pass.h"
#include "translation/restore_rules.h"
#include "translation/selected_cells.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

using Kind = DisplayRequest::Kind;

bool IsTranslated(const CellUnit& unit) {
  return !unit.translation.empty();
}

bool IsWritten(const CellUnit& unit) {
  return unit.written;
}

/// Sheets of the same names in another workbook are not meant.
bool IsSessionsWorkbook(const TargetContext& target, const TranslationSession& session) {
  return target.PinSerial() == session.pinSerial || target.WorkbookKey() == session.workbookKey;
}

/// The cells that a switch is about, or why they cannot be told.
struct Scope {
  UnitTest covers;
  bool isHostBusy = false;
  std::wstring_view message;
};

/// Good also when nothing is selected.
HostAnswer AskForSelection(const TargetContext& target) {
  HostAnswer answer;
  const ComPtr<IDispatch> window = target.GetTargetWindowDrv(&answer);
  Variant ignored;
  if (window != nullptr) {
    answer.hr = GetProperty(window.Get(), L"Selection", ignored, &answer.exceptionCode);
  }
  return answer;
}

Scope SelectionScope(const TargetContext& target, bool ours) {
  Scope scope;
  if (target.Application() != nullptr) {
    const HostAnswer answer = AskForSelection(target);
    scope.isHostBusy = answer.IsBusy();
    if (!answer.Ok()) {
      scope.message = kDisplaySelectionUnreadable;
      return scope;
    }
  }
  std::optional<SelectedCells> selected = ReadSelectedCells(target, scope.message);
  if (!selected) {
    scope.isHostBusy = scope.message == kDisplaySelectionUnreadable && AskHost(target.Application()).IsBusy();
    return scope;
  }
  scope.covers = [cells = *std::move(selected), ours](const CellUnit& unit) {
    return ours && IsTranslated(unit) && cells.Contains(unit);
  };
  return scope;
}

Scope SheetScope(const TargetContext& target, bool ours) {
  Scope scope;
  HostAnswer answer;
  Variant name;
  const ComPtr<IDispatch> sheet = target.GetActiveSheetDispatch(&answer);
  if (sheet != nullptr) answer.hr = GetProperty(sheet.Get(), L"Name", name, &answer.exceptionCode);
  scope.isHostBusy = answer.IsBusy();
  scope.covers = [sheetName = name.Text(), ours](const CellUnit& unit) {
    return ours && IsTranslated(unit) && unit.SheetName() == sheetName;
  };
  return scope;
}

Scope ScopeOf(const DisplayRequest& request, const TargetContext& target, const TranslationSession& session) {
  const bool ours = IsSessionsWorkbook(target, session);
  switch (request.scope) {
    case DisplayScope::kSelection:
      return SelectionScope(target, ours);
    case DisplayScope::kSheet:
      return SheetScope(target, ours);
    case DisplayScope::kSession:
      break;
  }
  return {IsTranslated, false, {}};
}

/// The units of a switch; the plan gets what stands in its way.
std::vector<std::size_t> UnitsOfSwitch(const DisplayRequest& request, const TargetContext& target,
                                       const TranslationSession& session, DisplayPlan& plan) {
  const Scope scope = ScopeOf(request, target, session);
  plan.isHostBusy = scope.isHostBusy;
  plan.message = scope.message;
  if (plan.isHostBusy || !plan.message.empty()) return {};
  std::size_t translated = 0;
  std::vector<std::size_t> units = UnitsThat(session, [&](const CellUnit& unit) {
    if (!scope.covers(unit)) return false;
    ++translated;
    return request.mode != DisplayMode::kOriginal || unit.written;
  });
  plan.message = EmptyScopeMessage(request.mode, request.scope, translated, units.size());
  return units;
}

std::vector<std::size_t> UnitsOf(const DisplayRequest& request, const TargetContext& target,
                                 const TranslationSession& session, DisplayPlan& plan) {
  switch (request.kind) {
    case Kind::kSwitch:
      return UnitsOfSwitch(request, target, session, plan);
    case Kind::kRestyle:
    case Kind::kRestoreAll:
      return UnitsThat(session, IsWritten);
    case Kind::kApplyAll:
      return UnitsThat(session, [](const CellUnit& unit) { return IsTranslated(unit) && !unit.written; });
    case Kind::kRestoreOne:
    case Kind::kApplyOne:
      return request.index < session.units.size() ? std::vector{request.index} : std::vector<std::size_t>();
    case Kind::kBeforeCollect:
      break;
  }
  const bool ours = IsSessionsWorkbook(target, session);
  return UnitsThat(session, [&](const CellUnit& unit) {
    return ours && unit.written && (request.sheetName.empty() || unit.SheetName() == request.sheetName);
  });
}

std::unique_ptr<UnitPass> MakePass(const DisplayRequest& request, TargetContext& target, PanelOutput& output,
                                   TranslationSession& session, std::vector<std::size_t> units) {
  if (request.kind == Kind::kRestyle) {
    session.font = request.font;
    return std::make_unique<RestylePass>(target, session, std::move(units));
  }
  if (request.kind == Kind::kBeforeCollect) {
    return std::make_unique<RestorePass>(target, session, std::move(units), RestoreRule::kOnlyOurs,
                                         request.sheetName.empty());
  }
  if (request.IsRestore()) {
    const bool whole = request.kind != Kind::kRestoreOne && request.scope == DisplayScope::kSession;
    return std::make_unique<RestorePass>(target, session, std::move(units), RestoreRule::kAsked, whole);
  }
  if (request.kind == Kind::kSwitch) {
    session.layout = request.mode == DisplayMode::kDual ? Layout::kDual : Layout::kTarget;
  }
  return std::make_unique<WritePass>(WriteBack(target, output, session, session.font), session,
                                     std::move(units), session.layout);
}

}  // namespace

bool DisplayRequest::IsRestore() const {
  return kind == Kind::kRestoreAll || kind == Kind::kRestoreOne || kind == Kind::kBeforeCollect ||
         (kind == Kind::kSwitch && mode == DisplayMode::kOriginal);
}

DisplayPlan PlanRequest(const DisplayRequest& request, TargetContext& target, PanelOutput& output,
                        TranslationSession& session) {
  DisplayPlan plan;
  // A run's start has pinned its target already.
  if (request.kind != Kind::kBeforeCollect) {
    plan.isHostBusy = AskHost(target.Application()).IsBusy();
    if (plan.isHostBusy) return plan;
    static_cast<void>(target.RefreshPin());
  }
  std::vector<std::size_t> units = UnitsOf(request, target, session, plan);
  if (plan.isHostBusy) return plan;
  const bool ours = IsSessionsWorkbook(target, session);
  if (request.IsRestore()) {
    // Heights that an earlier restore could not put back are due also where no unit is left.
    if (units.empty() && (!ours || RowsToRestore(session).empty())) return plan;
  } else if (!plan.message.empty()) {
    return plan;
  }
  plan.pass = MakePass(request, target, output, session, std::move(units));
  if (!ours) plan.pass->Refuse();
  return plan;
}

std::wstring_view FailureMessage(const DisplayRequest& request, const DisplayTally& tally) {
  return request.kind == Kind::kRestyle ? StyleFailureMessage(tally) : SwitchFailureMessage(tally);
}

std::wstring_view UnplannedMessage(const DisplayRequest& request) {
  const bool aboutSelection = request.kind == Kind::kSwitch && request.scope == DisplayScope::kSelection;
  return aboutSelection ? kDisplaySelectionUnreadable : FailureMessage(request, {0, 1, 0});
}

void ReportResult(const DisplayRequest& request, const DisplayTally& tally, std::wstring_view message,
                  PanelOutput& output) {
  switch (request.kind) {
    case Kind::kSwitch:
      PaneLog(DisplayModeLogLine(DisplayModeName(request.mode), request.scope, tally));
      output.RunPanelScript(DisplayModeDoneScript(DisplayModeName(request.mode), tally, message));
      break;
    case Kind::kRestyle:
      PaneLog(RestyleLogLine(tally));
      output.RunPanelScript(TargetStyleDoneScript(tally, message));
      break;
    case Kind::kRestoreAll:
      PaneLog(DisplayModeLogLine(DisplayModeName(DisplayMode::kOriginal), DisplayScope::kSession, tally));
      output.RunPanelScript(BatchDoneScript(L"restoreAll"));
      break;
    case Kind::kApplyAll:
      output.RunPanelScript(BatchDoneScript(L"applyAll"));
      break;
    case Kind::kBeforeCollect:
      PaneLog(Concat(L"Excel restore before collect sheet=",
                     request.sheetName.empty() ? L"<all>" : std::wstring_view(request.sheetName),
                     L" candidates=", tally.applied + tally.failed + tally.skipped, L" restored=",
                     tally.applied, L" failed=", tally.failed, L"\r\n"));
      break;
    case Kind::kRestoreOne:
    case Kind::kApplyOne:
      break;
  }
}

}  // namespace qv
