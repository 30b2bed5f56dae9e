#include <algorithm>

#include "engines/memory/range_object.h"
#include "engines/memory/style_access.h"

namespace qv::devhost::memory {
namespace {

bool IsWholeRows(const std::vector<Area>& areas) {
  return std::all_of(areas.begin(), areas.end(), [](const Area& area) { return area.IsWholeRows(); });
}

bool IsWholeColumns(const std::vector<Area>& areas) {
  return std::all_of(areas.begin(), areas.end(), [](const Area& area) { return area.IsWholeColumns(); });
}

/// One answer for all rows of all areas, or nothing.
template <typename Read>
std::optional<StyleValue> UniformRows(const std::vector<Area>& areas, Read&& read) {
  Uniform uniform;
  for (const Area& area : areas) {
    for (long row = area.row1; row <= area.row2; ++row) {
      if (!uniform.Add(read(row))) return std::nullopt;
    }
  }
  return uniform.Result();
}

template <typename Read>
std::optional<StyleValue> UniformColumns(const std::vector<Area>& areas, Read&& read) {
  Uniform uniform;
  for (const Area& area : areas) {
    for (long col = area.col1; col <= area.col2; ++col) {
      if (!uniform.Add(read(col))) return std::nullopt;
    }
  }
  return uniform.Result();
}

template <typename Change>
void ForRows(const std::vector<Area>& areas, Change&& change) {
  for (const Area& area : areas) {
    for (long row = area.row1; row <= area.row2; ++row)
      change(row);
  }
}

template <typename Change>
void ForColumns(const std::vector<Area>& areas, Change&& change) {
  for (const Area& area : areas) {
    for (long col = area.col1; col <= area.col2; ++col)
      change(col);
  }
}

double SizeArgument(const VARIANT& value, double maximum) {
  const double size = ToDouble(value);
  if (!(size >= 0 && size <= maximum)) Refuse();
  return size;
}

}  // namespace

Variant RangeObject::StyleMember(const StyleProperty<CellStyle>& property, Call& call) {
  if (!call.IsPut()) return StyleVariant(ReadCellStyle(*sheet_, areas_, property));
  WriteCellStyle(*sheet_, areas_, property, call.Value());
  return {};
}

Variant RangeObject::MergeCells(Call& call) {
  if (call.IsPut()) return ToBool(call.Value()) ? Merge(call) : UnMerge(call);
  if (AnswersArray()) {
    return FlagArray(
        [](const Sheet& sheet, long row, long col) { return sheet.MergeAt(row, col).has_value(); });
  }
  long long merged = 0;
  long long cells = 0;
  for (const Area& area : areas_) {
    cells += area.Cells();
    merged += sheet_->CountMerged(area);
  }
  const bool uniform = merged == 0 || merged == cells;
  return StyleVariant(uniform ? std::optional<StyleValue>(merged != 0) : std::nullopt);
}

Variant RangeObject::Merge(Call&) {
  Host::RequireFormattable(*sheet_);
  for (const Area& area : areas_) {
    long long filled = 0;
    sheet_->ForEach(area, [&](long, long, const Cell& cell) {
      if (cell.HasContent()) ++filled;
      return filled < 2;
    });
    // The host would ask whether contents may go; nobody is here to say yes.
    if (filled > 1 && GetHost().displayAlerts) return Variant(false);
    if (!sheet_->Merge(area)) Refuse();
  }
  return Variant(true);
}

Variant RangeObject::UnMerge(Call&) {
  Host::RequireFormattable(*sheet_);
  for (const Area& area : areas_)
    sheet_->UnMerge(area);
  return Variant(true);
}

Variant RangeObject::RowHeight(Call& call) {
  if (!call.IsPut()) {
    return StyleVariant(UniformRows(areas_, [&](long row) { return sheet_->RowHeight(row); }));
  }
  Host::RequireFormattable(*sheet_);
  const double height = SizeArgument(call.Value(), Sheet::kMaxRowHeight);
  ForRows(areas_, [&](long row) { sheet_->SetRowHeight(row, height); });
  return {};
}

Variant RangeObject::ColumnWidth(Call& call) {
  if (!call.IsPut()) {
    return StyleVariant(UniformColumns(areas_, [&](long col) { return sheet_->ColumnWidth(col); }));
  }
  Host::RequireFormattable(*sheet_);
  const double width = SizeArgument(call.Value(), Sheet::kMaxColumnWidth);
  ForColumns(areas_, [&](long col) { sheet_->SetColumnWidth(col, width); });
  return {};
}

Variant RangeObject::Width(Call&) {
  return Variant(sheet_->WidthOf(First()));
}
Variant RangeObject::Height(Call&) {
  return Variant(sheet_->HeightOf(First()));
}

Variant RangeObject::Left(Call&) {
  const long before = First().col1 - 1;
  return Variant(before == 0 ? 0.0 : sheet_->WidthOf({1, 1, 1, before}));
}

Variant RangeObject::Top(Call&) {
  const long before = First().row1 - 1;
  return Variant(before == 0 ? 0.0 : sheet_->HeightOf({1, 1, before, 1}));
}

Variant RangeObject::Hidden(Call& call) {
  const bool rows = IsWholeRows(areas_);
  if (!rows && !IsWholeColumns(areas_)) Refuse();
  if (!call.IsPut()) {
    return StyleVariant(rows ? UniformRows(areas_, [&](long row) { return sheet_->IsRowHidden(row); })
                             : UniformColumns(areas_, [&](long col) { return sheet_->IsColumnHidden(col); }));
  }
  Host::RequireFormattable(*sheet_);
  const bool hide = ToBool(call.Value());
  if (rows) {
    ForRows(areas_, [&](long row) { sheet_->HideRow(row, hide); });
  } else {
    ForColumns(areas_, [&](long col) { sheet_->HideColumn(col, hide); });
  }
  return {};
}

Variant RangeObject::AutoFit(Call&) {
  const bool rows = view_ == RangeView::kRows || IsWholeRows(areas_);
  const bool columns = view_ == RangeView::kColumns || IsWholeColumns(areas_);
  // A mere block of cells is neither and is refused, as in the host.
  if (!rows && !columns) Refuse();
  Host::RequireFormattable(*sheet_);
  if (rows) {
    ForRows(areas_, [&](long row) { sheet_->AutoFitRow(row); });
  } else {
    ForColumns(areas_, [&](long col) { sheet_->AutoFitColumn(col); });
  }
  return Variant(true);
}

}  // namespace qv::devhost::memory
