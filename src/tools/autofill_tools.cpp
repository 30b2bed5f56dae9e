#include "tools/autofill_tools.h"

#include <optional>
#include <utility>
#include <vector>

#include "foundation/text.h"
#include "tools/autofill_cells.h"
#include "tools/autofill_fill.h"
#include "tools/block_writer.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "tools/undo_tools.h"
#include "tools/undoable_put.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"
#include "workbook/cell_block.h"
#include "workbook/host_state.h"
#include "workbook/range_reader.h"

namespace qv {
namespace {

// What becomes of one item.
constexpr const wchar_t* kApplied = L"applied";
constexpr const wchar_t* kSkipped = L"skipped";
constexpr const wchar_t* kFailed = L"failed";

/// Writes the items of one call.
class FillWriter {
 public:
  FillWriter(const ToolContext& context, const ToolSheet& sheet, UndoBook book, bool isProtected)
      : context_(context), sheet_(sheet), book_(std::move(book)), isProtected_(isProtected) {}

  /// The item's status.
  [[nodiscard]] const wchar_t* Write(const AutofillFill& fill) {
    const std::optional<CellContent> content = ContentOfFill(fill);
    if (!content) return kSkipped;
    CellTarget place;
    place.sheet = sheet_.sheet;
    place.cell = GetCellDispatch(sheet_.sheet.Get(), fill.row, fill.col, &place.status);
    if (place.cell == nullptr) return kFailed;
    if (isProtected_ && IsCellLocked(place.cell.Get(), sheet_.name, fill.row, fill.col)) return kSkipped;
    // A host takes such a value without a word and shows it nowhere.
    if (IsCoveredByMerge(RangeReader::LateBound(place.cell), fill.row, fill.col)) return kFailed;
    return Put(place, fill, *content) ? kApplied : kFailed;
  }

 private:
  bool Put(const CellTarget& place, const AutofillFill& fill, const CellContent& content) {
    std::vector<CellReading> former;
    // What could not be put back is not overwritten.
    if (!ReadCells(sheet_.sheet.Get(), {1, 1, fill.row, fill.col}, former).Ok() || !former[0].isReadable)
      return false;
    const std::wstring formerFormat =
        MayChangeFormat(content) ? GetStringProperty(place.cell.Get(), L"NumberFormat") : std::wstring();
    return PutUndoably(context_.autofill, place,
                       {fill.row, fill.col, sheet_.name, former[0].Content(), book_, std::nullopt}, content,
                       formerFormat);
  }

  const ToolContext& context_;
  const ToolSheet& sheet_;
  UndoBook book_;
  bool isProtected_;
};

/// Begins the record of an apply anew. The former one comes back at the end unless something was recorded.
class NewRecord {
 public:
  explicit NewRecord(AutofillUndo& undo) : undo_(undo), former_(std::exchange(undo, {})) {
    undo_.PushMarker();
  }
  ~NewRecord() {
    if (undo_.IsEmpty()) undo_ = std::move(former_);
  }
  NewRecord(const NewRecord&) = delete;
  NewRecord& operator=(const NewRecord&) = delete;

 private:
  AutofillUndo& undo_;
  AutofillUndo former_;
};

/// The sheet that "sheetName" names, else the pinned window's.
ToolSheet FindScanSheet(const ToolContext& context, const ToolArguments& arguments) {
  if (!arguments.Value(L"sheetName").empty()) return FindToolSheet(context, arguments);
  ToolSheet found;
  found.sheet = context.target.GetTargetActiveSheetDrv();
  return found;
}

/// Why there is no sheet to scan, which is no error of the tool.
std::wstring_view ReasonOf(const ToolSheet& missing) {
  if (missing.error.empty()) return kNoSheetText;
  return missing.error == ErrorResult(kHostBusyText) ? kHostBusyText : kUnknownSheetText;
}

}  // namespace

std::wstring AutofillScan(const ToolContext& context, const std::wstring& json) {
  const ToolSheet sheet = FindScanSheet(context, ToolArguments(json));
  if (sheet.sheet == nullptr) return AutofillUnavailableResult(ReasonOf(sheet));
  const AutofillCells found = CollectAutofillCells(sheet.sheet.Get());
  return found.error.empty() ? AutofillScanResult(found.fields, found.usedRange, found.holdsData)
                             : AutofillUnavailableResult(found.error);
}

std::wstring AutofillApply(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  const std::vector<AutofillFill> fills = ParseAutofillFills(arguments.Value(L"fills"));
  if (fills.empty()) return L"{\"results\":[],\"applied\":0}";
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  HostAnswer answer;
  UndoBook book = BookOfSheet(context, sheet.sheet.Get(), answer);
  if (answer.IsBusy()) return ErrorResult(kHostBusyText);
  const bool isProtected = IsSheetProtected(sheet.sheet.Get(), &answer);
  if (answer.IsBusy()) return ErrorResult(kHostBusyText);
  const DisplayAlertsGuard alertsOff(context.target.Application());
  const NewRecord record(context.autofill);
  FillWriter writer(context, sheet, std::move(book), isProtected);
  std::wstring results;
  int applied = 0;
  for (const AutofillFill& fill : fills) {
    const wchar_t* const status = writer.Write(fill);
    if (status == kApplied) ++applied;
    if (!results.empty()) results += L',';
    results += Concat(L"{\"row\":", fill.row, L",\"col\":", fill.col, L",\"status\":\"", status, L"\"}");
  }
  return Concat(L"{\"results\":[", results, L"],\"applied\":", applied, L'}');
}

std::wstring AutofillUndoLast(const ToolContext& context, const std::wstring&) {
  // All records of an apply are of one workbook, to which the user may come back.
  const int restored =
      IsForOtherBook(context, context.autofill) ? 0 : RestoreToMarker(context, context.autofill);
  return Concat(L"{\"restored\":", restored, L'}');
}

}  // namespace qv
