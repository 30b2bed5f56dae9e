#include "workbook/target_context.h"

#include <utility>

#include "foundation/logging.h"
#include "workbook/automation.h"

namespace qv {

void TargetContext::Pin(ExcelWindow target) {
  pinned_ = std::move(target);
  implicit_ = false;
  ++pinSerial_;
  fullName_.clear();
  plainName_.clear();
  ReadWorkbookNames();
}

void TargetContext::ReadWorkbookNames() {
  const auto read = [this](const wchar_t* name, std::wstring& text) {
    Variant value;
    if (SUCCEEDED(GetProperty(pinned_.workbook.Get(), name, value))) text = value.Text();
  };
  read(L"FullName", fullName_);
  read(L"Name", plainName_);
}

bool TargetContext::RefreshPin() {
  if (!pinned_.IsValid() || implicit_) {
    Pin(ExcelWindow::ResolveForInvocation(application_.Get(), nullptr));
    implicit_ = true;
  } else if (RefreshIfDocumentSwapped(pinned_, application_.Get(), true)) {
    Pin(std::move(pinned_));
  } else {
    // The workbook may have been saved under another name.
    ReadWorkbookNames();
  }
  return pinned_.workbook != nullptr;
}

void TargetContext::DropImplicitPin() {
  if (implicit_) Pin({});
}

const std::wstring& TargetContext::WorkbookKey() const {
  return fullName_.empty() ? plainName_ : fullName_;
}

ComPtr<IDispatch> TargetContext::GetTargetWindowDrv(HostAnswer* answer) const {
  if (pinned_.IsValid()) return pinned_.window;
  PaneLog(L"GetTargetWindowDrv: degraded ActiveWindow (no pinned window)\r\n");
  return GetDispProperty(application_.Get(), L"ActiveWindow", answer);
}

ComPtr<IDispatch> TargetContext::ActiveSheetOr(const wchar_t* degradedLine, HostAnswer* answer) const {
  if (pinned_.IsValid()) return GetDispProperty(pinned_.window.Get(), L"ActiveSheet", answer);
  PaneLog(degradedLine);
  return GetDispProperty(application_.Get(), L"ActiveSheet", answer);
}

ComPtr<IDispatch> TargetContext::GetTargetActiveSheetDrv() const {
  return ActiveSheetOr(L"GetTargetActiveSheetDrv: degraded ActiveSheet (no pinned window)\r\n");
}

ComPtr<IDispatch> TargetContext::GetTargetSelectionDrv(HostAnswer* answer) const {
  const ComPtr<IDispatch> window = GetTargetWindowDrv(answer);
  return window != nullptr ? GetDispProperty(window.Get(), L"Selection", answer) : nullptr;
}

ComPtr<IDispatch> TargetContext::DegradingActiveSheet(HostAnswer* answer) const {
  return ActiveSheetOr(L"GetActiveSheetDispatch: degraded App.ActiveSheet (no pinned window)\r\n", answer);
}

ComPtr<IDispatch> TargetContext::GetActiveSheetDispatch(HostAnswer* answer) const {
  ComPtr<IDispatch> sheet = DegradingActiveSheet(answer);
  PaneLog(sheet != nullptr ? L"GetActiveSheetDispatch: OK\r\n"
                           : L"GetActiveSheetDispatch: no active sheet\r\n");
  return sheet;
}

std::wstring TargetContext::GetActiveSheetName() const {
  return GetStringProperty(DegradingActiveSheet().Get(), L"Name");
}

ComPtr<IDispatch> TargetContext::WorkbookOr(const wchar_t* degradedLine, HostAnswer* answer) const {
  if (pinned_.workbook != nullptr) return pinned_.workbook;
  PaneLog(degradedLine);
  return GetDispProperty(application_.Get(), L"ActiveWorkbook", answer);
}

ComPtr<IDispatch> TargetContext::GetActiveWorkbookSheets(HostAnswer* answer) const {
  HostAnswer first;
  const ComPtr<IDispatch> workbook =
      WorkbookOr(L"GetActiveWorkbookSheets: degraded ActiveWorkbook (no pinned workbook)\r\n", &first);
  HostAnswer last = first;
  ComPtr<IDispatch> sheets;
  if (workbook != nullptr) {
    sheets = GetDispProperty(workbook.Get(), L"Worksheets", &first);
    last = first;
    if (sheets == nullptr) sheets = GetDispProperty(workbook.Get(), L"Sheets", &last);
  }
  if (answer != nullptr) *answer = sheets == nullptr && first.IsBusy() ? first : last;
  return sheets;
}

ComPtr<IDispatch> TargetContext::GetActiveWorkbookWorksheets(HostAnswer* answer) const {
  const ComPtr<IDispatch> workbook =
      WorkbookOr(L"GetActiveWorkbookWorksheets: degraded ActiveWorkbook (no pinned book)\r\n", answer);
  return workbook != nullptr ? GetDispProperty(workbook.Get(), L"Worksheets", answer) : nullptr;
}

void TargetContext::ReleaseReferences() {
  pinned_.window = nullptr;
  pinned_.workbook = nullptr;
  application_ = nullptr;
}

}  // namespace qv
