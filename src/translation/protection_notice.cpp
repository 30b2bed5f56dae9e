#include "translation/protection_notice.h"

#include <string>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/run_messages.h"
#include "translation/run_scripts.h"
#include "workbook/cell_text.h"

namespace qv {
namespace {

/// What may have kept the write out.
struct Obstacle {
  bool sheetProtected = false;
  bool readOnly = false;
  bool cellLocked = false;
};

Obstacle FindObstacle(const TargetContext& target, const CellUnit& unit) {
  const ComPtr<IDispatch> found = ResolveSheet(target, unit.SheetName());
  IDispatch* const sheet = found.Get();
  Obstacle obstacle;
  obstacle.sheetProtected = IsSheetProtected(sheet);
  obstacle.readOnly = IsWorkbookReadOnly(target.Application());
  obstacle.cellLocked = unit.kind == UnitKind::kCell && IsCellLocked(sheet, unit.row, unit.col);
  return obstacle;
}

const wchar_t* MessageFor(const Obstacle& obstacle) {
  if (obstacle.cellLocked) return L"目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。";
  if (obstacle.sheetProtected || obstacle.readOnly) {
    return L"无法写入该单元格（工作表保护或单元格已锁定）。请解锁后重试。";
  }
  return L"部分单元格无法写入译文，请检查该格是否可编辑。";
}

void LogRefusedWrite(const CellUnit& unit, const Obstacle& obstacle, bool bilingual) {
  PaneLog(Concat(L"Excel PutCellValue failed sheet=", unit.SheetName(), L" row=", unit.row, L" col=",
                 unit.col, L" addr=", A1Address(unit.row, unit.col), L" protected=", obstacle.sheetProtected,
                 L" locked=", obstacle.cellLocked, L" readonlyFlag=", obstacle.readOnly, L" bilingual=",
                 bilingual, L"\r\n"));
}

void LogSilentFailure(const CellUnit& unit, const CellWriteResult& result, const Obstacle& obstacle) {
  PaneLog(Concat(L"Excel write failed hr=0x", Hex8(result.hr), L" sheet=", unit.SheetName(), L" row=",
                 unit.row, L" col=", unit.col, L" protected=", obstacle.sheetProtected, L" locked=",
                 obstacle.cellLocked, L" (no protection toast)\r\n"));
}

void LogNotice(const CellUnit& unit, const CellWriteResult& result, const Obstacle& obstacle) {
  PaneLog(Concat(L"NotifySheetProtectionBlocked hr=0x", Hex8(result.hr), L" sheet=", unit.SheetName(),
                 L" protected=", obstacle.sheetProtected, L" readonlyFlag=", obstacle.readOnly,
                 L" cellLocked=", obstacle.cellLocked, L" row=", unit.row, L" col=", unit.col, L"\r\n"));
}

}  // namespace

void ProtectionNotice::OnWriteFailed(const CellUnit& unit, const CellWriteResult& result, bool bilingual) {
  // A busy host would refuse the questions, too.
  const Obstacle obstacle = result.IsBusy() ? Obstacle() : FindObstacle(target_, unit);
  LogRefusedWrite(unit, obstacle, bilingual);
  if (given_) {
    LogSilentFailure(unit, result, obstacle);
    return;
  }
  given_ = true;
  const std::wstring message = MessageFor(obstacle);
  LogNotice(unit, result, obstacle);
  output_.PostPanelJson(SheetWriteBlockedMessage(message));
  output_.RunPanelScript(SheetWriteBlockedScript(message));
  output_.RunPanelScript(ToastScript(message, L"warn"));
}

void ProtectionNotice::OnWriteGivenUp(const CellUnit& unit, const CellWriteResult& result, bool bilingual) {
  // A busy host is not asked about protection either.
  LogRefusedWrite(unit, {}, bilingual);
  LogSilentFailure(unit, result, {});
}

}  // namespace qv
