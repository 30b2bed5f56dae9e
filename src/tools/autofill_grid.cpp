#include "tools/autofill_grid.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::wstring_view kBetweenTexts = L" | ";

/// Cuts without leaving half of a surrogate pair behind.
void CutRowText(std::wstring& text) {
  if (text.size() <= kMaxRowText) return;
  const bool splitsPair = (text[kMaxRowText - 1] & 0xFC00) == 0xD800;
  text.resize(kMaxRowText - (splitsPair ? 1 : 0));
}

/// The lines that are seen, and for each line the one seen before it.
void TakeLines(const std::vector<bool>& hidden, std::int32_t none, std::vector<std::int32_t>& seen,
               std::vector<std::int32_t>& before) {
  seen.clear();
  before.clear();
  for (std::size_t line = 0; line < hidden.size(); ++line) {
    before.push_back(seen.empty() ? none : seen.back());
    if (!hidden[line]) seen.push_back(static_cast<std::int32_t>(line));
  }
}

}  // namespace

AutofillGrid::AutofillGrid(const RangeGeometry& place, std::vector<Cell> cells, TextOfOther textOfOther,
                           AlphabeticTest isAlphabetic)
    : place_(place),
      cells_(std::move(cells)),
      textOfOther_(std::move(textOfOther)),
      isAlphabetic_(isAlphabetic) {
  SetHiddenLines(std::vector<bool>(static_cast<std::size_t>(place.rows)),
                 std::vector<bool>(static_cast<std::size_t>(place.cols)));
}

void AutofillGrid::SetMergedAreas(std::span<const RangeGeometry> areas) {
  if (areas.empty()) return;
  shown_.resize(cells_.size());
  std::iota(shown_.begin(), shown_.end(), std::size_t{0});
  for (const RangeGeometry& area : areas) {
    if (!place_.Holds(area.firstRow, area.firstCol)) continue;
    const std::int32_t top = area.firstRow - place_.firstRow;
    const std::int32_t left = area.firstCol - place_.firstCol;
    for (std::int32_t row = top; row < std::min(top + area.rows, place_.rows); ++row) {
      for (std::int32_t col = left; col < std::min(left + area.cols, place_.cols); ++col)
        shown_[IndexOf(row, col)] = IndexOf(top, left);
    }
  }
}

void AutofillGrid::SetHiddenLines(std::vector<bool> rows, std::vector<bool> cols) {
  TakeLines(rows, kNone, seenRows_, rowBefore_);
  TakeLines(cols, kNone, seenCols_, colBefore_);
}

bool AutofillGrid::HoldsData() const {
  return std::ranges::any_of(cells_, [](const Cell& cell) { return cell.holdsOther || !cell.text.empty(); });
}

const AutofillGrid::Cell* AutofillGrid::SeenAt(std::int32_t row, std::int32_t col, std::size_t& index) const {
  if (row == kNone || col == kNone) return nullptr;
  index = IndexOf(row, col);
  if (!shown_.empty()) index = shown_[index];
  return &cells_[index];
}

std::wstring_view AutofillGrid::LabelAt(std::int32_t row, std::int32_t col) const {
  std::size_t index = 0;
  const Cell* const cell = SeenAt(row, col, index);
  if (cell == nullptr || cell->text.empty() || ClassifyAutofillText(cell->text)) return {};
  return IsUntranslatable(cell->text, isAlphabetic_) ? std::wstring_view() : Trim(cell->text);
}

std::wstring_view AutofillGrid::LabelFor(std::int32_t row, std::int32_t col) const {
  const std::wstring_view left = LabelAt(row, colBefore_[static_cast<std::size_t>(col)]);
  return left.empty() ? LabelAt(rowBefore_[static_cast<std::size_t>(row)], col) : left;
}

std::vector<CellPlace> AutofillGrid::Candidates() const {
  std::vector<CellPlace> places;
  for (const std::int32_t row : seenRows_) {
    for (const std::int32_t col : seenCols_) {
      const std::size_t index = IndexOf(row, col);
      const Cell& cell = cells_[index];
      if (cell.holdsOther || IsCovered(index)) continue;
      const std::optional<AutofillKind> kind = ClassifyAutofillText(cell.text);
      if (!kind || (kind == AutofillKind::kEmpty && LabelFor(row, col).empty())) continue;
      places.push_back({place_.firstRow + row, place_.firstCol + col});
    }
  }
  return places;
}

std::wstring AutofillGrid::TextOfCell(std::size_t index) const {
  const Cell& cell = cells_[index];
  if (!cell.holdsOther) return std::wstring(Trim(cell.text));
  const auto columns = static_cast<std::size_t>(place_.cols);
  return textOfOther_(static_cast<std::int32_t>(index / columns) + 1,
                      static_cast<std::int32_t>(index % columns) + 1);
}

std::wstring AutofillGrid::TextAt(std::int32_t row, std::int32_t col) const {
  std::size_t index = 0;
  return SeenAt(row, col, index) == nullptr ? std::wstring() : TextOfCell(index);
}

std::wstring AutofillGrid::RowText(std::int32_t row) const {
  std::wstring joined;
  for (const std::int32_t col : seenCols_) {
    const std::size_t index = IndexOf(row, col);
    if (IsCovered(index)) continue;
    const std::wstring text = TextOfCell(index);
    if (text.empty()) continue;
    if (!joined.empty()) joined += kBetweenTexts;
    joined += text;
    if (joined.size() > kMaxRowText) break;
  }
  CutRowText(joined);
  return joined;
}

AutofillField AutofillGrid::FieldAt(std::int32_t row, std::int32_t col) const {
  const Cell& cell = cells_[IndexOf(row, col)];
  AutofillField field;
  field.row = place_.firstRow + row;
  field.col = place_.firstCol + col;
  field.id = UnitIdOf(field.row, field.col);
  field.address = A1Address(field.row, field.col);
  field.kind = ClassifyAutofillText(cell.text).value_or(AutofillKind::kEmpty);
  if (field.kind != AutofillKind::kEmpty) field.placeholderText = Trim(cell.text);
  field.currentValue = cell.text;
  field.label = LabelFor(row, col);
  field.context.left = TextAt(row, colBefore_[static_cast<std::size_t>(col)]);
  field.context.above = TextAt(rowBefore_[static_cast<std::size_t>(row)], col);
  return field;
}

std::vector<AutofillField> AutofillGrid::Fields(std::span<const CellPlace> places) const {
  std::vector<AutofillField> fields;
  fields.reserve(places.size());
  for (const CellPlace& place : places) {
    AutofillField field = FieldAt(place.row - place_.firstRow, place.col - place_.firstCol);
    const bool isNewRow = fields.empty() || fields.back().row != place.row;
    field.context.rowText = isNewRow ? RowText(place.row - place_.firstRow) : fields.back().context.rowText;
    fields.push_back(std::move(field));
  }
  return fields;
}

}  // namespace qv
