#include <algorithm>
#include <set>

#include "engines/memory/range_object.h"
#include "engines/memory/range_picture.h"
#include "engines/memory/shapes_object.h"
#include "foundation/text.h"

namespace qv::devhost::memory {
namespace {

constexpr long kHeaderYes = 1;

/// The numbers of the columns that are compared: one number, or a list from 0 on.
std::vector<long> ColumnsOf(const VARIANT* argument, long count) {
  std::vector<long> columns;
  if (argument == nullptr) {
    for (long column = 1; column <= count; ++column)
      columns.push_back(column);
  } else if (argument->vt == (VT_ARRAY | VT_VARIANT)) {
    LONG low = 0;
    LONG high = -1;
    SafeArrayGetLBound(argument->parray, 1, &low);
    SafeArrayGetUBound(argument->parray, 1, &high);
    // The host takes lists from 0 on only.
    if (low != 0 || SafeArrayGetDim(argument->parray) != 1) Refuse();
    for (LONG i = low; i <= high; ++i) {
      Variant element;
      SafeArrayGetElement(argument->parray, &i, element.Put());
      columns.push_back(ToLong(element.Get()));
    }
  } else {
    columns.push_back(ToLong(*argument));
  }
  if (std::ranges::any_of(columns, [&](long column) { return column < 1 || column > count; })) Refuse();
  return columns;
}

/// What two rows are compared by: values without regard to case.
std::wstring KeyOf(const Sheet& sheet, long row, const Area& area, const std::vector<long>& columns) {
  std::wstring key;
  for (const long column : columns) {
    const Cell* const cell = sheet.Find(row, area.col1 + column - 1);
    const CellValue value = cell == nullptr ? CellValue() : cell->value;
    std::wstring text = DisplayText(value, L"General");
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    key += Concat(value.index(), L':', text, L'\n');
  }
  return key;
}

}  // namespace

bool RangeObject::IsEntire(bool rows) const {
  return std::ranges::all_of(
      areas_, [&](const Area& area) { return rows ? area.IsWholeRows() : area.IsWholeColumns(); });
}

Variant RangeObject::Delete(Call&) {
  Host::RequireFormattable(*sheet_);
  const bool rows = IsEntire(true);
  // Only whole rows and columns move in this model.
  if ((!rows && !IsEntire(false)) || areas_.size() != 1) Refuse();
  sheet_->DeleteLines(rows, rows ? First().row1 : First().col1, rows ? First().Rows() : First().Columns());
  return Variant(true);
}

Variant RangeObject::Insert(Call&) {
  Host::RequireFormattable(*sheet_);
  const bool rows = IsEntire(true);
  if ((!rows && !IsEntire(false)) || areas_.size() != 1) Refuse();
  const bool inserted = sheet_->InsertLines(rows, rows ? First().row1 : First().col1,
                                            rows ? First().Rows() : First().Columns());
  // What is in use is not pushed over the sheet's edge.
  if (!inserted) Refuse();
  return Variant(true);
}

Variant RangeObject::RemoveDuplicates(Call& call) {
  if (areas_.size() != 1) Refuse();
  Host::RequireWritable(*sheet_, areas_);
  const std::vector<long> columns = ColumnsOf(call.Arg(0), First().Columns());
  const auto used = Intersect(First(), sheet_->UsedArea());
  if (!used) return {};
  const long top = First().row1 + (call.Long(1, 2) == kHeaderYes ? 1 : 0);
  std::set<std::wstring> seen;
  long target = top;
  for (long row = top; row <= used->row2; ++row) {
    if (!seen.insert(KeyOf(*sheet_, row, First(), columns)).second) continue;
    if (target != row) sheet_->CopyContents({row, First().col1, row, First().col2}, target);
    ++target;
  }
  if (target <= used->row2) sheet_->ClearContents({target, First().col1, used->row2, First().col2});
  return {};
}

Variant RangeObject::CopyPicture(Call& call) {
  CopyDrawing(GetHost(), call, DrawRange(*sheet_, First()).Get());
  return Variant(true);
}

}  // namespace qv::devhost::memory
