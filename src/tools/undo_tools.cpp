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

/// Full name of a workbook, else its plain name, else empty. `answer` receives how the host answered.
std::wstring BookName(IDispatch* book, HostAnswer& answer) {
  for (const wchar_t* member : {L"FullName", L"Name"}) {
    Variant name;
    answer.hr = GetProperty(book, member, name, &answer.exceptionCode);
    if (answer.IsBusy()) return {};
    if (!name.Text().empty()) return name.Text();
  }
  return {};
}

/// Puts cells back where their workbook is still the one that the pane works on.
class Restorer {
 public:
  explicit Restorer(const ToolContext& context) : context_(context), finder_(context.target) {}

  [[nodiscard]] CellWriteResult Restore(const UndoRecord& record) {
    CellTarget place = finder_.Find(record.sheetName, record.row, record.col);
    if (place.cell != nullptr) {
      place.status = CheckBook(record, place.sheet);
      // The failure is logged like any other.
      if (!place.status.Ok()) place.cell = nullptr;
    }
    const CellWriteResult result =
        RestoreCellContent(place, record.sheetName, record.row, record.col, record.previous);
    return result.Ok() && record.format ? RestoreFormat(place.cell.Get(), *record.format) : result;
  }

 private:
  /// Good when the sheet lies in the record's workbook. Neighbouring records share their sheet, whose
  /// workbook is asked once.
  [[nodiscard]] HostAnswer CheckBook(const UndoRecord& record, const ComPtr<IDispatch>& sheet) {
    if (sheet.Get() != sheet_.Get()) {
      HostAnswer answer;
      book_ = BookOfSheet(context_, sheet.Get(), answer);
      if (answer.IsBusy()) return answer;
      sheet_ = sheet;
    }
    return record.book.IsSame(book_) ? HostAnswer{} : HostAnswer{E_FAIL, 0};
  }

  /// Puts the former number format back unless the user chose another one since. Only a busy host keeps the
  /// cell from being restored.
  [[nodiscard]] static HostAnswer RestoreFormat(IDispatch* cell, const UndoFormat& format) {
    Variant now;
    HostAnswer answer;
    answer.hr = GetProperty(cell, L"NumberFormat", now, &answer.exceptionCode);
    if (answer.Ok() && now.Text() == format.written) {
      answer = PutProperty(cell, L"NumberFormat", Variant(format.former));
    }
    return answer.IsBusy() ? answer : HostAnswer{};
  }

  const ToolContext& context_;
  CellFinder finder_;
  ComPtr<IDispatch> sheet_;
  UndoBook book_;
};

}  // namespace

UndoBook BookOfSheet(const TargetContext& target, IDispatch* sheet, HostAnswer& answer) {
  const ComPtr<IDispatch> book = GetDispProperty(sheet, L"Parent", &answer);
  UndoBook found;
  if (book != nullptr) found.name = BookName(book.Get(), answer);
  IDispatch* const pinned = target.Pinned().workbook.Get();
  if (answer.IsBusy() || found.name.empty() || pinned == nullptr) return found;
  // Objects that are fetched again may differ; no two open workbooks have one full name.
  if (BookName(pinned, answer) == found.name) found.pinSerial = target.PinSerial();
  return found;
}

bool IsForOtherBook(const ToolContext& context, UndoLog& undo) {
  if (undo.IsEmpty()) return false;
  HostAnswer answer;
  const ComPtr<IDispatch> shown = context.target.GetActiveSheetDispatch(&answer);
  if (shown == nullptr) return false;
  const UndoBook now = BookOfSheet(context, shown.Get(), answer);
  return !answer.IsBusy() && !now.name.empty() && !undo.Newest(1).front().book.IsSame(now);
}

std::wstring PushUndoMarker(const ToolContext& context, const std::wstring&) {
  context.undo.PushMarker();
  return Concat(L"{\"ok\":true,\"depth\":", context.undo.Depth(), L'}');
}

int RestoreToMarker(const ToolContext& context, UndoLog& undo) {
  if (undo.Depth() == 0) return 0;
  const DisplayAlertsGuard alertsOff(context.target.Application());
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
  return restored;
}

std::wstring UndoMessage(const ToolContext& context, const std::wstring&) {
  const int restored = RestoreToMarker(context, context.undo);
  return Concat(L"{\"restored\":", restored, L",\"depth\":", context.undo.Depth(), L'}');
}

}  // namespace qv
