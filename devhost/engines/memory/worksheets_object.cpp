#include "engines/memory/worksheets_object.h"

#include "engines/memory/host_events.h"
#include "engines/memory/workbook_object.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {
namespace {

/// What the host answers for an index that no item has.
constexpr HostError kBadIndex{DISP_E_BADINDEX, 0};

}  // namespace

const ClassInfo& WorksheetsObject::Class() const {
  using W = WorksheetsObject;
  static const ClassInfo info("Worksheets",
                              {
                                  {L"Count", kGet, Do<&W::Count>},
                                  {L"Item", kGet, Do<&W::Item>},
                                  {L"Add", kMethod, Do<&W::Add>},
                                  {L"Parent", kGet, Do<&W::Parent>},
                                  {L"Application", kGet, Do<&W::Application>},
                              },
                              L"Item", true);
  return info;
}

void WorksheetsObject::RequireAlive() const {
  RequireAliveWorkbook(*workbook_);
}

std::shared_ptr<Sheet> FindSheetItem(const Workbook& workbook, const VARIANT& index) {
  if (index.vt == VT_BSTR) {
    const auto sheet = workbook.FindSheet(ToText(index));
    if (sheet == nullptr) throw kBadIndex;
    return sheet;
  }
  const long number = ToLong(index);
  if (number < 1 || number > static_cast<long>(workbook.sheets.size())) throw kBadIndex;
  return workbook.sheets[static_cast<size_t>(number - 1)];
}

Variant WorksheetsObject::Count(Call&) {
  return Variant(static_cast<long>(workbook_->sheets.size()));
}

Variant WorksheetsObject::Item(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  return Make<WorksheetObject>(SharedHost(), FindSheetItem(*workbook_, *index));
}

Variant WorksheetsObject::Add(Call& call) {
  const auto* before = dynamic_cast<WorksheetObject*>(NativeObject(call.Arg(0)));
  const auto* after = dynamic_cast<WorksheetObject*>(NativeObject(call.Arg(1)));
  const long count = call.Long(2, 1);
  Host::RequireOpenStructure(*workbook_);
  if ((before != nullptr && after != nullptr) || count < 1) Refuse();
  size_t position = 0;
  if (before != nullptr) {
    position = workbook_->IndexOf(*before->GetSheet());
  } else if (after != nullptr) {
    position = workbook_->IndexOf(*after->GetSheet()) + 1;
  } else if (!workbook_->windows.empty() && workbook_->windows.front()->activeSheet != nullptr) {
    position = workbook_->IndexOf(*workbook_->windows.front()->activeSheet);
  }
  std::shared_ptr<Sheet> sheet;
  for (long i = 0; i < count; ++i) {
    sheet = GetHost().AddSheet(workbook_, L"", position);
    FireSheetAdded(SharedHost(), workbook_, sheet);
  }
  ActivateSheet(SharedHost(), sheet);
  return Make<WorksheetObject>(SharedHost(), sheet);
}

Variant WorksheetsObject::Parent(Call&) {
  return Make<WorkbookObject>(SharedHost(), workbook_);
}

}  // namespace qv::devhost::memory
