#include "tools/undo_tools.h"

#include <optional>
#include <utility>

#include "foundation/text.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"
#include "workbook/cell_finder.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

/// Puts cells back where their workbook is still the one that the pane works on.
class Restorer {
 public:
  explicit Restorer(const ToolContext& context) : context_(context), finder_(context.target) {}

  [[nodiscard]] CellWriteResult Restore(const UndoRecord& record) {
    const CellTarget place = finder_.Find(record.sheetName, record.row, record.col);
    if (place.cell != nullptr && !IsSameBook(record, place.sheet)) return {E_FAIL, 0};
    return RestoreCellContent(place, record.sheetName, record.row, record.col, record.previous);
  }

 private:
  /// Neighbouring records share their sheet, whose workbook is asked once.
  [[nodiscard]] bool IsSameBook(const UndoRecord& record, const ComPtr<IDispatch>& sheet) {
    if (sheet.Get() != sheet_.Get()) {
      sheet_ = sheet;
      book_ = BookOfSheet(context_, sheet.Get());
    }
    return record.book.IsSame(book_);
  }

  const ToolContext& context_;
  CellFinder finder_;
  ComPtr<IDispatch> sheet_;
  UndoBook book_;
};

}  // namespace

UndoBook BookOfSheet(const ToolContext& context, IDispatch* sheet) {
  const ComPtr<IDispatch> book = GetDispProperty(sheet, L"Parent");
  std::wstring name = GetStringProperty(book.Get(), L"FullName");
  if (name.empty()) name = GetStringProperty(book.Get(), L"Name");
  const bool isPinned = context.target.Pinned().IsValid();
  return {isPinned ? context.target.PinSerial() : 0, std::move(name)};
}

std::wstring PushUndoMarker(const ToolContext& context, const std::wstring&) {
  context.undo.PushMarker();
  return Concat(L"{\"ok\":true,\"depth\":", context.undo.Depth(), L'}');
}

std::wstring UndoMessage(const ToolContext& context, const std::wstring&) {
  const DisplayAlertsGuard alertsOff(context.target.Application());
  UndoLog& undo = context.undo;
  Restorer restorer(context);
  int restored = 0;
  bool busy = false;
  while (!busy) {
    std::optional<UndoRecord> record = undo.TakeNewest();
    if (!record) break;
    if (record->row == 0) continue;
    const CellWriteResult result = restorer.Restore(*record);
    if (result.Ok()) ++restored;
    busy = result.IsBusy();
    if (busy) undo.Append(*std::move(record));
  }
  if (!busy) undo.PopMarker();
  return Concat(L"{\"restored\":", restored, L",\"depth\":", undo.Depth(), L'}');
}

}  // namespace qv
