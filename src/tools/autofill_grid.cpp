#include "tools/autofill_grid.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::wstring_view kBetweenTexts = L" | ";

/// The front of a text, without half of a surrogate pair at its end.
std::wstring_view Cut(std::wstring_view text, std::size_t most = kMaxNearText) {
  if (text.size() <= most) return text;
  const bool splitsPair = (text[most - 1] & 0xFC00) == 0xD800;
  return text.substr(0, most - (splitsPair ? 1 : 0));
}

/// Keeps what the fields have of their surroundings within the bound.
void Spend(std::size_t& left, AutofillField& field) {
  const auto size = [&field] {
    const AutofillContext& context = field.context;
    return field.label.size() + context.left.size() + context.above.size() + context.rowText.size();
  };
  if (size() > left) {
    field.context = {};
    field.label = Cut(field.label, kShortLabel);
  }
  left -= std::min(left, size());
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

std::wstring_view AutofillGrid::LabelFor(std::int32_t row, std::int32_t col, std::int32_t rowAbove) const {
  const std::wstring_view left = LabelAt(row, colBefore_[static_cast<std::size_t>(col)]);
  return left.empty() ? LabelAt(rowAbove, col) : left;
}

bool AutofillGrid::IsPlaceholderAt(std::int32_t row, std::int32_t col) const {
  std::size_t index = 0;
  const Cell* const cell = SeenAt(row, col, index);
  return cell != nullptr &&
         ClassifyAutofillText(cell->text).value_or(AutofillKind::kEmpty) != AutofillKind::kEmpty;
}

std::int32_t AutofillGrid::RowAbovePlaceholders(std::int32_t row, std::int32_t col, Climb& last) const {
  std::int32_t above = rowBefore_[static_cast<std::size_t>(row)];
  while (above != last.from && IsPlaceholderAt(above, col))
    above = rowBefore_[static_cast<std::size_t>(above)];
  if (above != kNone && above == last.from) above = last.to;
  last = {row, above};
  return above;
}

std::vector<CellPlace> AutofillGrid::Candidates() const {
  std::vector<CellPlace> places;
  for (const std::int32_t row : seenRows_) {
    for (const std::int32_t col : seenCols_) {
      const std::size_t index = IndexOf(row, col);
      const Cell& cell = cells_[index];
      if (cell.holdsOther || IsCovered(index)) continue;
      const std::optional<AutofillKind> kind = ClassifyAutofillText(cell.text);
      if (!kind || (kind == AutofillKind::kEmpty &&
                    LabelFor(row, col, rowBefore_[static_cast<std::size_t>(row)]).empty()))
        continue;
      places.push_back({place_.firstRow + row, place_.firstCol + col});
    }
  }
  return places;
}

std::wstring AutofillGrid::TextOfCell(std::size_t index) const {
  const Cell& cell = cells_[index];
  if (!cell.holdsOther) return std::wstring(Cut(Trim(cell.text)));
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
    if (joined.size() > kMaxNearText) break;
  }
  return std::wstring(Cut(joined));
}

AutofillField AutofillGrid::FieldAt(std::int32_t row, std::int32_t col, Climb& last) const {
  const Cell& cell = cells_[IndexOf(row, col)];
  AutofillField field;
  field.row = place_.firstRow + row;
  field.col = place_.firstCol + col;
  field.id = UnitIdOf(field.row, field.col);
  field.address = A1Address(field.row, field.col);
  field.kind = ClassifyAutofillText(cell.text).value_or(AutofillKind::kEmpty);
  if (field.kind != AutofillKind::kEmpty) field.placeholderText = Trim(cell.text);
  field.currentValue = cell.text;
  const std::int32_t before = rowBefore_[static_cast<std::size_t>(row)];
  const bool isEmpty = field.kind == AutofillKind::kEmpty;
  field.label = Cut(LabelFor(row, col, isEmpty ? before : RowAbovePlaceholders(row, col, last)));
  field.context.left = TextAt(row, colBefore_[static_cast<std::size_t>(col)]);
  field.context.above = TextAt(before, col);
  return field;
}

std::vector<AutofillField> AutofillGrid::Fields(std::span<const CellPlace> places) const {
  std::vector<AutofillField> fields;
  fields.reserve(places.size());
  std::vector<Climb> climbs(static_cast<std::size_t>(place_.cols));
  std::wstring rowText;
  std::size_t left = kMaxNearTexts;
  for (const CellPlace& place : places) {
    const std::int32_t col = place.col - place_.firstCol;
    AutofillField field = FieldAt(place.row - place_.firstRow, col, climbs[static_cast<std::size_t>(col)]);
    const bool isNewRow = fields.empty() || fields.back().row != place.row;
    if (isNewRow) rowText = RowText(place.row - place_.firstRow);
    field.context.rowText = rowText;
    Spend(left, field);
    fields.push_back(std::move(field));
  }
  return fields;
}

}  // namespace qv
