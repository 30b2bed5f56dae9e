#include "engines/memory/workbook_object.h"

#include <algorithm>

#include "engines/memory/host_events.h"
#include "engines/memory/window_object.h"
#include "engines/memory/worksheet_object.h"
#include "engines/memory/worksheets_object.h"
#include "foundation/text.h"

namespace qv::devhost::memory {

void RequireAliveWorkbook(const Workbook& workbook) {
  if (workbook.closed) throw HostError{RPC_E_DISCONNECTED};
}

const ClassInfo& WorkbookObject::Class() const {
  using W = WorkbookObject;
  static const ClassInfo info("Workbook", {
                                              {L"Name", kGet, Do<&W::Name>},
                                              {L"FullName", kGet, Do<&W::FullName>},
                                              {L"Path", kGet, Do<&W::Path>},
                                              {L"ReadOnly", kGet, Do<&W::ReadOnly>},
                                              {L"Saved", kGet | kPut, Do<&W::Saved>},
                                              {L"Worksheets", kGet, Do<&W::Worksheets>},
                                              {L"Sheets", kGet, Do<&W::Worksheets>},
                                              {L"ActiveSheet", kGet, Do<&W::ActiveSheet>},
                                              {L"Windows", kGet, Do<&W::Windows>},
                                              {L"NewWindow", kMethod, Do<&W::NewWindow>},
                                              {L"Activate", kMethod, Do<&W::Activate>},
                                              {L"ProtectStructure", kGet, Do<&W::ProtectStructure>},
                                              {L"Protect", kMethod, Do<&W::Protect>},
                                              {L"Unprotect", kMethod, Do<&W::Unprotect>},
                                              {L"Close", kMethod, Do<&W::Close>},
                                              {L"Application", kGet, Do<&W::Application>},
                                              {L"Parent", kGet, Do<&W::Application>},
                                          });
  return info;
}

Variant WorkbookObject::Saved(Call& call) {
  if (!call.IsPut()) return Variant(workbook_->saved);
  workbook_->saved = ToBool(call.Value());
  return {};
}

Variant WorkbookObject::ProtectStructure(Call&) {
  return Variant(workbook_->isStructureProtected);
}

Variant WorkbookObject::Protect(Call& call) {
  workbook_->isStructureProtected = call.Bool(1, false);
  return {};
}

Variant WorkbookObject::Unprotect(Call&) {
  workbook_->isStructureProtected = false;
  return {};
}

Variant WorkbookObject::Worksheets(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) return Make<WorksheetsObject>(SharedHost(), workbook_);
  return Make<WorksheetObject>(SharedHost(), FindSheetItem(*workbook_, *index));
}

std::shared_ptr<Window> WorkbookObject::FrontWindow() const {
  const auto& windows = GetHost().windows;
  const auto found = std::find_if(windows.begin(), windows.end(),
                                  [&](const auto& window) { return window->workbook.lock() == workbook_; });
  return found == windows.end() ? nullptr : *found;
}

Variant WorkbookObject::ActiveSheet(Call&) {
  const auto window = FrontWindow();
  if (window == nullptr || window->activeSheet == nullptr) return Variant(static_cast<IDispatch*>(nullptr));
  return Make<WorksheetObject>(SharedHost(), window->activeSheet);
}

Variant WorkbookObject::Windows(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) return Make<WindowsObject>(SharedHost(), workbook_);
  return Make<WindowObject>(SharedHost(), FindWindowItem(GetHost(), workbook_, *index));
}

Variant WorkbookObject::NewWindow(Call&) {
  const auto window = GetHost().AddWindow(workbook_);
  FireWindowEvent(SharedHost(), AppEvent::kWindowActivate, window);
  return Make<WindowObject>(SharedHost(), window);
}

Variant WorkbookObject::Activate(Call&) {
  if (const auto window = FrontWindow()) ActivateWindow(SharedHost(), window);
  return {};
}

Variant WorkbookObject::Close(Call&) {
  GetHost().CloseWorkbook(workbook_);
  FireWindowEvent(SharedHost(), AppEvent::kWindowActivate, GetHost().ActiveWindow());
  return {};
}

const ClassInfo& WorkbooksObject::Class() const {
  using W = WorkbooksObject;
  static const ClassInfo info("Workbooks",
                              {
                                  {L"Count", kGet, Do<&W::Count>},
                                  {L"Item", kGet, Do<&W::Item>},
                                  {L"Add", kMethod, Do<&W::Add>},
                                  {L"Application", kGet, Do<&W::Application>},
                                  {L"Parent", kGet, Do<&W::Application>},
                              },
                              L"Item", true);
  return info;
}

Variant WorkbooksObject::Count(Call&) {
  return Variant(static_cast<long>(GetHost().workbooks.size()));
}

Variant WorkbooksObject::Item(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  const auto& workbooks = GetHost().workbooks;
  if (index->vt == VT_BSTR) {
    const std::wstring name = ToText(*index);
    const auto found = std::find_if(workbooks.begin(), workbooks.end(), [&](const auto& workbook) {
      return EqualsIgnoreAsciiCase(workbook->name, name);
    });
    if (found == workbooks.end()) throw HostError{DISP_E_BADINDEX};
    return Make<WorkbookObject>(SharedHost(), *found);
  }
  const long number = ToLong(*index);
  if (number < 1 || number > static_cast<long>(workbooks.size())) throw HostError{DISP_E_BADINDEX};
  return Make<WorkbookObject>(SharedHost(), workbooks[static_cast<size_t>(number - 1)]);
}

Variant WorkbooksObject::Add(Call&) {
  Host& host = GetHost();
  std::wstring name;
  for (size_t number = 1; name.empty(); ++number) {
    std::wstring candidate = Concat(L"Book", number);
    const bool taken = std::any_of(host.workbooks.begin(), host.workbooks.end(),
                                   [&](const auto& workbook) { return workbook->name == candidate; });
    if (!taken) name = std::move(candidate);
  }
  const auto workbook = host.AddWorkbook(name, L"", {});
  FireWorkbookEvent(SharedHost(), AppEvent::kWorkbookActivate, workbook);
  FireWindowEvent(SharedHost(), AppEvent::kWindowActivate, workbook->windows.front());
  return Make<WorkbookObject>(SharedHost(), workbook);
}

}  // namespace qv::devhost::memory
