#include "translation/write_back.h"

#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/bilingual_text.h"
#include "translation/cell_style.h"
#include "translation/chart_titles.h"
#include "workbook/automation.h"

namespace qv {

void WriteBack::PrepareLayout(Layout layout) {
  if (layout == Layout::kDual) rows_.NoteFrozenRows();
}

WriteOutcome WriteBack::WriteUnit(std::size_t index, Layout layout) {
  if (index >= session_.units.size() || session_.units[index].translation.empty()) {
    return WriteOutcome::kNothing;
  }
  CellUnit& unit = session_.units[index];
  const CellWriteResult result = unit.kind == UnitKind::kChartTitle
                                     ? WriteChartTitle(target_, unit, unit.translation)
                                     : WriteCell(unit, layout);
  if (result.IsBusy()) {
    lastBusy_ = result;
    return WriteOutcome::kBusy;
  }
  if (!result.Ok()) {
    // The cell is still the user's own; the next write looks at it anew.
    if (!unit.written) unit.ForgetBaseline();
    notice_.OnWriteFailed(unit, result, layout == Layout::kDual);
    return WriteOutcome::kFailed;
  }
  unit.written = true;
  unit.bilingual = layout == Layout::kDual && unit.kind == UnitKind::kCell;
  return WriteOutcome::kWritten;
}

CellWriteResult WriteBack::WriteCell(CellUnit& unit, Layout layout) {
  const bool dual = layout == Layout::kDual;
  BilingualValue value;
  if (dual) value = MakeBilingualValue(unit.sourceText, unit.translation);
  const std::wstring_view text = dual ? value.text : unit.translation;
  LogCellPut(unit.SheetName(), unit.row, unit.col, text);
  const CellTarget place = finder_.Find(unit.SheetName(), unit.row, unit.col);
  if (place.cell == nullptr) return place.status;
  if (const HostAnswer captured = CaptureBaseline(unit, place.cell.Get()); !captured.Ok()) return captured;
  return dual ? BilingualWrite(unit, place, value)
              : PutCellText(place, unit.SheetName(), unit.row, unit.col, text);
}

HostAnswer WriteBack::CaptureBaseline(CellUnit& unit, IDispatch* cell) {
  // Taken once: a busy host makes the same unit come again, with a cell that may look different by then.
  if (unit.baseline) return {};
  HostAnswer answer;
  BaselineFont font = CaptureBaselineFont(cell, unit.row, unit.col, answer);
  if (answer.IsBusy()) return answer;
  std::wstring formula;
  answer = ReadFormula(cell, formula);
  if (answer.IsBusy()) return answer;
  unit.baseline = std::move(font);
  if (!formula.empty()) unit.formulaBeforeWrite = std::move(formula);
  return {};
}

HostAnswer WriteBack::CaptureWrap(CellUnit& unit, IDispatch* cell) {
  if (!unit.baseline || unit.baseline->wrap) return {};
  HostAnswer answer;
  Variant wrap;
  answer.hr = GetProperty(cell, L"WrapText", wrap, &answer.exceptionCode);
  if (answer.IsBusy()) return answer;
  if (wrap.Type() == VT_BOOL) unit.baseline->wrap = wrap.IsTrue();
  return {};
}

CellWriteResult WriteBack::BilingualWrite(CellUnit& unit, const CellTarget& place,
                                          const BilingualValue& value) {
  IDispatch* const cell = place.cell.Get();
  if (const HostAnswer captured = CaptureWrap(unit, cell); !captured.Ok()) return captured;
  // A row of automatic height grows with its text, so its height is read before.
  if (const HostAnswer begun = rows_.BeginCell(unit, cell); !begun.Ok()) return begun;
  const CellWriteResult result = PutCellText(place, unit.SheetName(), unit.row, unit.col, value.text);
  if (!result.Ok()) return result;
  WrapCellText(cell);
  PaneLog(Concat(L"BilingualWrite row=", unit.row, L" col=", unit.col, L" originalLen=", value.originalLength,
                 L" trimmedLen=", value.trimmedLength, L" start1Based=", value.start, L" transLen=",
                 value.length, L"\r\n"));
  static_cast<void>(StyleTranslation(cell, value, font_));
  rows_.EndCell(unit, value.text);
  return result;
}

void WriteBack::GiveUp(std::size_t index, Layout layout) {
  if (index >= session_.units.size()) return;
  // A copy: the notice asks the host, and with it a new start may come that replaces the units.
  const CellUnit unit = session_.units[index];
  notice_.OnWriteGivenUp(unit, lastBusy_, layout == Layout::kDual);
}

}  // namespace qv
