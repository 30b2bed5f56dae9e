#include "translation/display_passes.h"

#include <string>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/bilingual_text.h"
#include "translation/cell_style.h"
#include "workbook/automation.h"

namespace qv {
namespace {

/// Whether the text still holds the translation at its place, counted in the cell's own line ends.
bool HoldsTranslation(std::wstring_view live, const BilingualValue& value, std::wstring_view translation) {
  const std::size_t begin = static_cast<std::size_t>(value.start) - 1;
  return live.size() >= begin + translation.size() && live.substr(begin, translation.size()) == translation;
}

}  // namespace

WritePass::WritePass(WriteBack writeBack, TranslationSession& session, std::vector<std::size_t> units,
                     Layout layout)
    : UnitPass(session, std::move(units)), writeBack_(std::move(writeBack)), layout_(layout) {
  writeBack_.PrepareLayout(layout);
}

UnitPass::Step WritePass::Finish() {
  writeBack_.FinishRows();
  return writeBack_.HasDueRows() ? Step::kBusy : Step::kDone;
}

void WritePass::EndSlice() {
  writeBack_.FinishRows();
  writeBack_.ReleaseReferences();
}

WriteOutcome RestylePass::Change(std::size_t index) {
  const CellUnit& unit = Session().units[index];
  if (!unit.written || !unit.bilingual) return WriteOutcome::kNothing;
  CellTarget place = finder_.Find(unit.SheetName(), unit.row, unit.col);
  Variant live;
  if (place.cell != nullptr) {
    place.status.hr = GetProperty(place.cell.Get(), L"Value2", live, &place.status.exceptionCode);
  }
  if (!place.status.Ok()) return place.status.IsBusy() ? WriteOutcome::kBusy : WriteOutcome::kFailed;
  const BilingualValue value = MakeBilingualValue(unit.sourceText, unit.translation);
  const std::wstring text = live.Text();
  if (!HoldsTranslation(text, value, unit.translation)) {
    PaneLog(Concat(L"RestyleCellIndex guard-fail row=", unit.row, L" col=", unit.col, L" liveLen=",
                   text.size(), L" start1Based=", value.start, L" transLen=", value.length, L"\r\n"));
    return WriteOutcome::kNothing;
  }
  const HostAnswer styled = StyleTranslation(place.cell.Get(), value, Session().font);
  if (styled.IsBusy()) return WriteOutcome::kBusy;
  return styled.Ok() ? WriteOutcome::kWritten : WriteOutcome::kFailed;
}

}  // namespace qv
