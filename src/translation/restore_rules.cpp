#include "translation/restore_rules.h"

#include <algorithm>
#include <map>
#include <set>

#include "foundation/text.h"
#include "translation/bilingual_text.h"
#include "translation/row_height.h"

namespace qv {
namespace {

std::wstring Normalised(std::wstring_view text) {
  return ReplaceAll(ReplaceAll(TrimRight(text), L"\r\n", L"\n"), L"\r", L"\n");
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

bool IsOurFormula(const CellUnit& unit, std::wstring_view live) {
  return live.empty() || (unit.formulaBeforeWrite && *unit.formulaBeforeWrite == live);
}

std::vector<std::size_t> UnitsThat(const TranslationSession& session, const UnitTest& passes) {
  std::vector<std::size_t> indexes;
  for (std::size_t i = 0; i < session.units.size(); ++i) {
    if (passes(session.units[i])) indexes.push_back(i);
  }
  return indexes;
}

std::vector<SheetRow> RowsToRestore(const TranslationSession& session) {
  std::map<std::wstring_view, std::set<std::int32_t>> changed;
  for (const auto& [row, height] : session.previousRowHeights)
    changed[row.first].insert(row.second);
  if (changed.empty()) return {};
  for (const CellUnit& unit : session.units) {
    if (!unit.written) continue;
    if (const auto sheet = changed.find(unit.SheetName()); sheet != changed.end()) {
      sheet->second.erase(unit.row);
    }
  }
  std::vector<SheetRow> due;
  for (const auto& [sheetName, rows] : changed) {
    for (const std::int32_t row : rows)
      due.emplace_back(sheetName, row);
  }
  return due;
}

double RestorableHeight(double points) {
  return std::clamp(points, kMinRowHeight, kMaxRowHeight);
}

}  // namespace qv
