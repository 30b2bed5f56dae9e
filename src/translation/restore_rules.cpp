#include "translation/restore_rules.h"

#include <algorithm>
#include <set>

#include "foundation/text.h"
#include "translation/bilingual_text.h"
#include "translation/row_height.h"

namespace qv {
namespace {

std::wstring Normalised(std::wstring_view text) {
  return ReplaceAll(ReplaceAll(TrimRight(text), L"\r\n", L"\n"), L"\r", L"\n");
}

SheetRow RowOf(const CellUnit& unit) {
  return {unit.SheetName(), unit.row};
}

}  // namespace

std::wstring WrittenTextOf(const CellUnit& unit) {
  return unit.bilingual ? MakeBilingualValue(unit.sourceText, unit.translation).text : unit.translation;
}

bool IsSameCellText(std::wstring_view left, std::wstring_view right) {
  return left == right || Normalised(left) == Normalised(right);
}

bool IsOurText(const CellUnit& unit, std::wstring_view live) {
  return IsSameCellText(live, WrittenTextOf(unit)) || IsSameCellText(live, unit.sourceText);
}

std::vector<std::size_t> UnitsThat(const TranslationSession& session, const UnitTest& passes) {
  std::vector<std::size_t> indexes;
  for (std::size_t i = 0; i < session.units.size(); ++i) {
    if (passes(session.units[i])) indexes.push_back(i);
  }
  return indexes;
}

std::vector<SheetRow> RowsToRestore(const TranslationSession& session,
                                    const std::vector<std::size_t>& units) {
  std::set<SheetRow> rows;
  if (session.previousRowHeights.empty()) return {};
  for (const std::size_t index : units) {
    SheetRow row = RowOf(session.units[index]);
    if (session.previousRowHeights.contains(row)) rows.insert(std::move(row));
  }
  for (const CellUnit& unit : session.units) {
    if (unit.written && unit.bilingual && !rows.empty()) rows.erase(RowOf(unit));
  }
  return {rows.begin(), rows.end()};
}

double RestorableHeight(double points) {
  return std::clamp(points, kMinRowHeight, kMaxRowHeight);
}

}  // namespace qv
