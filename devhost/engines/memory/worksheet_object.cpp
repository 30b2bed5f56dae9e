#include "engines/memory/worksheet_object.h"

#include <algorithm>
#include <string>
#include <vector>

#include "engines/memory/chart_objects.h"
#include "engines/memory/host_events.h"
#include "engines/memory/range_object.h"
#include "engines/memory/shapes_object.h"
#include "engines/memory/workbook_object.h"

namespace qv::devhost::memory {
namespace {

constexpr size_t kMaxSheetName = 31;
constexpr long kWorksheetType = -4167;
constexpr long kVisible = -1;

bool IsGoodName(const std::wstring& name) {
  return !name.empty() && name.size() <= kMaxSheetName &&
         name.find_first_of(L":\\/?*[]") == std::wstring::npos && name.front() != L'\'' &&
         name.back() != L'\'';
}

size_t VisibleSheets(const Workbook& workbook) {
  return static_cast<size_t>(std::count_if(workbook.sheets.begin(), workbook.sheets.end(),
                                           [](const auto& sheet) { return sheet->visible == kVisible; }));
}

}  // namespace

void RenameSheet(Sheet& sheet, const std::wstring& name) {
  Host::RequireOpenStructure(*sheet.workbook.lock());
  const auto taken = sheet.workbook.lock()->FindSheet(name);
  if (!IsGoodName(name) || (taken != nullptr && taken.get() != &sheet)) Refuse();
  sheet.name = name;
}

void RequireDeletable(const Sheet& sheet) {
  Host::RequireOpenStructure(*sheet.workbook.lock());
  if (sheet.visible == kVisible && VisibleSheets(*sheet.workbook.lock()) == 1) Refuse();
}

void RequireAliveSheet(const Sheet& sheet) {
  const auto workbook = sheet.workbook.lock();
  if (sheet.deleted || workbook == nullptr || workbook->closed) throw HostError{RPC_E_DISCONNECTED};
}

const ClassInfo& WorksheetObject::Class() const {
  using W = WorksheetObject;
  static const ClassInfo info("Worksheet", {
                                               {L"Name", kGet | kPut, Do<&W::Name>},
                                               {L"Index", kGet, Do<&W::Index>},
                                               {L"Type", kGet, Do<&W::Type>},
                                               {L"Visible", kGet | kPut, Do<&W::Visible>},
                                               {L"Parent", kGet, Do<&W::Parent>},
                                               {L"Application", kGet, Do<&W::Application>},
                                               {L"Cells", kGet, Do<&W::Cells>},
                                               {L"Range", kGet, Do<&W::Range>},
                                               {L"Rows", kGet, Do<&W::Rows>},
                                               {L"Columns", kGet, Do<&W::Columns>},
                                               {L"UsedRange", kGet, Do<&W::UsedRange>},
                                               {L"ProtectContents", kGet, Do<&W::ProtectContents>},
                                               {L"Protect", kMethod, Do<&W::Protect>},
                                               {L"Unprotect", kMethod, Do<&W::Unprotect>},
                                               {L"ChartObjects", kMethod, Do<&W::ChartObjects>},
                                               {L"Shapes", kGet, Do<&W::Shapes>},
                                               {L"Activate", kMethod, Do<&W::Activate>},
                                               {L"Select", kMethod, Do<&W::Activate>},
                                               {L"Delete", kMethod, Do<&W::Delete>},
                                               {L"Calculate", kMethod, Do<&W::Calculate>},
                                           });
  return info;
}

std::shared_ptr<Workbook> WorksheetObject::Book() const {
  // RequireAlive has seen to it that there is one.
  return sheet_->workbook.lock();
}

Variant WorksheetObject::Name(Call& call) {
  if (!call.IsPut()) return Variant(sheet_->name);
  RenameSheet(*sheet_, ToText(call.Value()));
  return {};
}

Variant WorksheetObject::Index(Call&) {
  return Variant(static_cast<long>(Book()->IndexOf(*sheet_)) + 1);
}
Variant WorksheetObject::Type(Call&) {
  return Variant(kWorksheetType);
}

Variant WorksheetObject::Visible(Call& call) {
  if (!call.IsPut()) return Variant(sheet_->visible);
  const long wanted =
      call.Value().vt == VT_BOOL ? (ToBool(call.Value()) ? kVisible : 0) : ToLong(call.Value());
  if (wanted != kVisible && wanted != 0 && wanted != 2) Refuse();
  const bool hides = sheet_->visible == kVisible && wanted != kVisible;
  if (hides && VisibleSheets(*Book()) == 1) Refuse();
  sheet_->visible = wanted;
  if (!hides) return {};
  for (const auto& window : Book()->windows) {
    if (window->activeSheet != sheet_) continue;
    const auto& sheets = Book()->sheets;
    window->activeSheet = *std::find_if(sheets.begin(), sheets.end(),
                                        [](const auto& sheet) { return sheet->visible == kVisible; });
  }
  return {};
}

Variant WorksheetObject::Parent(Call&) {
  return Make<WorkbookObject>(SharedHost(), Book());
}

Variant WorksheetObject::Cells(Call& call) {
  const Area area = call.Count() == 0 ? kWholeSheet : CellFromArguments(kWholeSheet, call);
  return Make<RangeObject>(SharedHost(), sheet_, std::vector{area});
}

Variant WorksheetObject::Range(Call& call) {
  return Make<RangeObject>(SharedHost(), sheet_, AreasFromArguments(call));
}

Variant WorksheetObject::RowsOrColumns(Call& call, bool rows) {
  const RangeView view = rows ? RangeView::kRows : RangeView::kColumns;
  const VARIANT* index = call.Arg(0);
  const Area area = index == nullptr ? kWholeSheet : RowsOrColumnsFromArgument(kWholeSheet, *index, view);
  return Make<RangeObject>(SharedHost(), sheet_, std::vector{area}, view);
}

Variant WorksheetObject::Rows(Call& call) {
  return RowsOrColumns(call, true);
}
Variant WorksheetObject::Columns(Call& call) {
  return RowsOrColumns(call, false);
}

Variant WorksheetObject::UsedRange(Call&) {
  return Make<RangeObject>(SharedHost(), sheet_, std::vector{sheet_->UsedArea()});
}

Variant WorksheetObject::ProtectContents(Call&) {
  return Variant(sheet_->isProtected);
}

Variant WorksheetObject::Protect(Call&) {
  sheet_->isProtected = true;
  return {};
}

Variant WorksheetObject::Unprotect(Call&) {
  sheet_->isProtected = false;
  return {};
}

Variant WorksheetObject::ChartObjects(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) return Make<ChartObjectsObject>(SharedHost(), sheet_);
  return Make<ChartObjectObject>(SharedHost(), sheet_, FindChart(*sheet_, *index));
}

Variant WorksheetObject::Shapes(Call&) {
  return Make<ShapesObject>(SharedHost(), sheet_);
}

Variant WorksheetObject::Activate(Call&) {
  ActivateSheet(SharedHost(), sheet_);
  return {};
}

Variant WorksheetObject::Delete(Call&) {
  RequireDeletable(*sheet_);
  // The host would ask; nobody is here to say yes.
  if (GetHost().displayAlerts) return Variant(false);
  GetHost().DeleteSheet(sheet_);
  return Variant(true);
}

Variant WorksheetObject::Calculate(Call&) {
  FireSheetEvent(SharedHost(), AppEvent::kSheetCalculate, sheet_);
  return {};
}

}  // namespace qv::devhost::memory
