#include "engines/memory/range_object.h"

#include <algorithm>

#include "engines/memory/areas_object.h"
#include "engines/memory/borders_object.h"
#include "engines/memory/characters_object.h"
#include "engines/memory/font_object.h"
#include "engines/memory/host_events.h"
#include "engines/memory/interior_object.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {
namespace {

long ColumnNumber(const VARIANT& argument) {
  if (argument.vt != VT_BSTR) return ToLong(argument);
  const auto cell = ParseAddress(ToText(argument) + L"1");
  if (!cell) Refuse();
  return cell->front().col1;
}

Area Checked(const Area& area) {
  if (area.row1 < 1 || area.col1 < 1 || area.row2 > kMaxRow || area.col2 > kMaxColumn ||
      area.row1 > area.row2 || area.col1 > area.col2) {
    Refuse();
  }
  return area;
}

/// The host takes no longer address.
constexpr size_t kMaxAddressLength = 255;

std::vector<Area> AreasOfArgument(const VARIANT& argument) {
  if (const auto* range = dynamic_cast<RangeObject*>(NativeObject(&argument))) return range->Areas();
  const std::wstring address = ToText(argument);
  const auto areas = address.size() > kMaxAddressLength ? std::nullopt : ParseAddress(address);
  if (!areas) Refuse();
  return *areas;
}

}  // namespace

RangeObject::RangeObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::vector<Area> areas,
                         RangeView view)
    : DispatchObject(std::move(host)), sheet_(std::move(sheet)), areas_(std::move(areas)), view_(view) {}

const ClassInfo& RangeObject::Class() const {
  using R = RangeObject;
  static const ClassInfo info(
      "Range",
      {
          {L"_Default", kGet | kPut, Do<&R::Default>},
          {L"Value", kGet | kPut, Do<&R::Value>},
          {L"Value2", kGet | kPut, Do<&R::Value2>},
          {L"Formula", kGet | kPut, Do<&R::Formula>},
          {L"HasFormula", kGet, Do<&R::HasFormula>},
          {L"Text", kGet, Do<&R::Text>},
          {L"ClearContents", kMethod, Do<&R::ClearContents>},
          {L"Item", kGet | kPut, Do<&R::Item>},
          {L"Cells", kGet, Do<&R::Cells>},
          {L"Rows", kGet, Do<&R::Rows>},
          {L"Columns", kGet, Do<&R::Columns>},
          {L"Row", kGet, Do<&R::Row>},
          {L"Column", kGet, Do<&R::Column>},
          {L"Count", kGet, Do<&R::Count>},
          {L"CountLarge", kGet, Do<&R::CountLarge>},
          {L"Address", kGet, Do<&R::Address>},
          {L"Areas", kGet, Do<&R::AreasOf>},
          {L"EntireRow", kGet, Do<&R::EntireRow>},
          {L"EntireColumn", kGet, Do<&R::EntireColumn>},
          {L"Offset", kGet, Do<&R::Offset>},
          {L"Resize", kGet, Do<&R::Resize>},
          {L"Worksheet", kGet, Do<&R::Worksheet>},
          {L"Parent", kGet, Do<&R::Worksheet>},
          {L"Application", kGet, Do<&R::Application>},
          {L"Select", kMethod, Do<&R::Select>},
          {L"Activate", kMethod, Do<&R::Activate>},
          {L"MergeArea", kGet, Do<&R::MergeArea>},
          {L"MergeCells", kGet | kPut, Do<&R::MergeCells>},
          {L"Merge", kMethod, Do<&R::Merge>},
          {L"UnMerge", kMethod, Do<&R::UnMerge>},
          {L"RowHeight", kGet | kPut, Do<&R::RowHeight>},
          {L"ColumnWidth", kGet | kPut, Do<&R::ColumnWidth>},
          {L"Width", kGet, Do<&R::Width>},
          {L"Height", kGet, Do<&R::Height>},
          {L"Left", kGet, Do<&R::Left>},
          {L"Top", kGet, Do<&R::Top>},
          {L"Hidden", kGet | kPut, Do<&R::Hidden>},
          {L"AutoFit", kMethod, Do<&R::AutoFit>},
          {L"Delete", kMethod, Do<&R::Delete>},
          {L"Insert", kMethod, Do<&R::Insert>},
          {L"RemoveDuplicates", kMethod, Do<&R::RemoveDuplicates>},
          {L"CopyPicture", kMethod, Do<&R::CopyPicture>},
          {L"Font", kGet, Do<&R::Font>},
          {L"Interior", kGet, Do<&R::Interior>},
          {L"Borders", kGet, Do<&R::Borders>},
          {L"Characters", kGet, Do<&R::Characters>},
          {L"WrapText", kGet | kPut, Do<&R::StyleOf<kWrapText>>},
          {L"Locked", kGet | kPut, Do<&R::StyleOf<kLocked>>},
          {L"NumberFormat", kGet | kPut, Do<&R::StyleOf<kNumberFormat>>},
          {L"HorizontalAlignment", kGet | kPut, Do<&R::StyleOf<kHorizontalAlignment>>},
          {L"VerticalAlignment", kGet | kPut, Do<&R::StyleOf<kVerticalAlignment>>},
      },
      L"_Default");
  return info;
}

void RangeObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

void* RangeObject::OtherInterface(REFIID iid) {
  return IsEqualIID(iid, kRangeIid) && GetHost().typedRange ? static_cast<IDispatch*>(this) : nullptr;
}

long long RangeObject::CountAll() const {
  long long count = 0;
  for (const Area& area : areas_) {
    count += view_ == RangeView::kCells  ? area.Cells()
             : view_ == RangeView::kRows ? area.Rows()
                                         : area.Columns();
  }
  return count;
}

Variant RangeObject::Sub(const Area& area, RangeView view) const {
  return Make<RangeObject>(SharedHost(), sheet_, std::vector{area}, view);
}

Variant RangeObject::Item(Call& call) {
  if (call.Count() == 0) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  const VARIANT* first = call.Arg(0);
  if (view_ != RangeView::kCells && call.Count() == 1 && first != nullptr) {
    return Sub(RowsOrColumnsFromArgument(First(), *first, view_), view_);
  }
  const Area cell = CellFromArguments(First(), call);
  if (!call.IsPut()) return Sub(cell);
  ComPtr<RangeObject> range;
  range.Attach(new RangeObject(SharedHost(), sheet_, {cell}));
  range->PutContent(call.Value());
  return {};
}

Variant RangeObject::Cells(Call& call) {
  if (call.Count() == 0) return Make<RangeObject>(SharedHost(), sheet_, areas_);
  return Sub(CellFromArguments(First(), call));
}

Variant RangeObject::RowOrColumnPart(Call& call, RangeView view) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) return Make<RangeObject>(SharedHost(), sheet_, std::vector{First()}, view);
  return Sub(RowsOrColumnsFromArgument(First(), *index, view), view);
}

Variant RangeObject::Rows(Call& call) {
  return RowOrColumnPart(call, RangeView::kRows);
}
Variant RangeObject::Columns(Call& call) {
  return RowOrColumnPart(call, RangeView::kColumns);
}
Variant RangeObject::Row(Call&) {
  return Variant(First().row1);
}
Variant RangeObject::Column(Call&) {
  return Variant(First().col1);
}

Variant RangeObject::Count(Call&) {
  const long long count = CountAll();
  // More than a 32-bit number holds is an overflow in the host too.
  if (count > 2147483647LL) Refuse();
  return Variant(static_cast<long>(count));
}

Variant RangeObject::CountLarge(Call&) {
  Variant count;
  VARIANT* const out = count.Put();
  out->vt = VT_I8;
  out->llVal = CountAll();
  return count;
}

Variant RangeObject::Address(Call& call) {
  const std::wstring address = FormatAddress(areas_, call.Bool(0, true), call.Bool(1, true));
  constexpr long kA1 = 1;
  if (call.Long(2, kA1) != kA1 || call.Bool(3, false)) Refuse();
  return Variant(address);
}

Variant RangeObject::AreasOf(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) return Make<AreasObject>(SharedHost(), sheet_, areas_);
  const long number = ToLong(*index);
  if (number < 1 || number > static_cast<long>(areas_.size())) Refuse();
  return Sub(areas_[static_cast<size_t>(number - 1)]);
}

Variant RangeObject::EntireRow(Call&) {
  std::vector<Area> rows;
  for (const Area& area : areas_)
    rows.push_back({area.row1, 1, area.row2, kMaxColumn});
  return Make<RangeObject>(SharedHost(), sheet_, rows, RangeView::kRows);
}

Variant RangeObject::EntireColumn(Call&) {
  std::vector<Area> columns;
  for (const Area& area : areas_)
    columns.push_back({1, area.col1, kMaxRow, area.col2});
  return Make<RangeObject>(SharedHost(), sheet_, columns, RangeView::kColumns);
}

Variant RangeObject::Offset(Call& call) {
  const long rows = call.Long(0, 0);
  const long columns = call.Long(1, 0);
  std::vector<Area> moved;
  for (const Area& area : areas_) {
    moved.push_back(Checked({area.row1 + rows, area.col1 + columns, area.row2 + rows, area.col2 + columns}));
  }
  return Make<RangeObject>(SharedHost(), sheet_, moved);
}

Variant RangeObject::Resize(Call& call) {
  const Area& area = First();
  const long rows = call.Long(0, area.Rows());
  const long columns = call.Long(1, area.Columns());
  return Sub(Checked({area.row1, area.col1, area.row1 + rows - 1, area.col1 + columns - 1}));
}

Variant RangeObject::Worksheet(Call&) {
  return Make<WorksheetObject>(SharedHost(), sheet_);
}
Variant RangeObject::Application(Call&) {
  return ApplicationOf(*this);
}

Variant RangeObject::Select(Call&) {
  SelectAreas(SharedHost(), sheet_, areas_);
  return Variant(true);
}

Variant RangeObject::Activate(Call& call) {
  const auto window = FrontWindowOf(*SharedHost(), *sheet_);
  if (window == nullptr || window->activeSheet != sheet_) Refuse();
  SheetView& view = window->ViewOf(*sheet_);
  const auto holds = [this](const Area& area) { return area.Contains(First()); };
  if (!IsOneCell() || std::ranges::none_of(view.selection, holds)) return Select(call);
  view.activeCell = First();
  return Variant(true);
}

Variant RangeObject::MergeArea(Call&) {
  const auto merge = sheet_->MergeAt(First().row1, First().col1);
  // Only a single cell, or the whole of one merge area, has one.
  if (!IsOneCell() && !(merge && areas_.size() == 1 && *merge == First())) Refuse();
  return Sub(merge.value_or(First()));
}

Variant RangeObject::Font(Call&) {
  return Make<FontObject>(SharedHost(), std::make_unique<RangeFont>(sheet_, areas_));
}

Variant RangeObject::Interior(Call&) {
  return Make<InteriorObject>(SharedHost(), sheet_, areas_);
}

Variant RangeObject::Borders(Call& call) {
  if (const VARIANT* edge = call.Arg(0)) {
    return Make<BorderObject>(SharedHost(), sheet_, areas_, ToLong(*edge));
  }
  return Make<BordersObject>(SharedHost(), sheet_, areas_);
}

Variant RangeObject::Characters(Call& call) {
  const VARIANT* length = call.Arg(1);
  return Make<CharactersObject>(SharedHost(), sheet_, areas_, call.Long(0, 1),
                                length == nullptr ? -1 : ToLong(*length));
}

Area CellFromArguments(const Area& within, Call& call) {
  const VARIANT* first = call.Arg(0);
  const VARIANT* second = call.Arg(1);
  if (first == nullptr || call.Count() > 2) throw HostError{DISP_E_BADPARAMCOUNT};
  if (second != nullptr) {
    const long row = within.row1 + ToLong(*first) - 1;
    const long col = within.col1 + ColumnNumber(*second) - 1;
    return Checked(CellArea(row, col));
  }
  // One number counts along the rows.
  const long index = ToLong(*first) - 1;
  if (index < 0) Refuse();
  return Checked(CellArea(within.row1 + index / within.Columns(), within.col1 + index % within.Columns()));
}

Area RowsOrColumnsFromArgument(const Area& within, const VARIANT& argument, RangeView view) {
  const bool rows = view == RangeView::kRows;
  long first = 0;
  long last = 0;
  if (argument.vt == VT_BSTR) {
    std::wstring text = ToText(argument);
    if (text.find(L':') == std::wstring::npos) text = text + L":" + text;
    const auto areas = ParseAddress(text);
    if (!areas || areas->size() != 1) Refuse();
    first = rows ? areas->front().row1 : areas->front().col1;
    last = rows ? areas->front().row2 : areas->front().col2;
  } else {
    first = last = ToLong(argument);
  }
  return rows ? Checked({within.row1 + first - 1, within.col1, within.row1 + last - 1, within.col2})
              : Checked({within.row1, within.col1 + first - 1, within.row2, within.col1 + last - 1});
}

Variant UnionOfArguments(const std::shared_ptr<Host>& host, Call& call) {
  if (call.Count() < 2) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  std::vector<Area> areas;
  std::shared_ptr<Sheet> sheet;
  for (size_t i = 0; i < call.Count(); ++i) {
    const auto* const range = dynamic_cast<RangeObject*>(NativeObject(call.Arg(i)));
    // All on one sheet.
    if (range == nullptr || (sheet != nullptr && range->GetSheet() != sheet)) Refuse();
    sheet = range->GetSheet();
    areas.insert(areas.end(), range->Areas().begin(), range->Areas().end());
  }
  return Make<RangeObject>(host, sheet, areas);
}

std::vector<Area> AreasFromArguments(Call& call) {
  const VARIANT* first = call.Arg(0);
  const VARIANT* second = call.Arg(1);
  if (first == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  std::vector<Area> areas = AreasOfArgument(*first);
  if (second == nullptr) return areas;
  Area joined = areas.front();
  for (const Area& other : AreasOfArgument(*second)) {
    joined = {std::min(joined.row1, other.row1), std::min(joined.col1, other.col1),
              std::max(joined.row2, other.row2), std::max(joined.col2, other.col2)};
  }
  return {joined};
}

}  // namespace qv::devhost::memory
