#include "workbook/target_context.h"

#include <utility>

#include "foundation/logging.h"
#include "workbook/automation.h"

namespace qv {

void TargetContext::Pin(ExcelWindow target) {
  pinned_ = std::move(target);
  fullName_ = GetStringProperty(pinned_.workbook.Get(), L"FullName");
  plainName_ = GetStringProperty(pinned_.workbook.Get(), L"Name");
}

bool TargetContext::RefreshPin() {
  if (!pinned_.IsValid()) {
    Pin(ExcelWindow::ResolveForInvocation(application_.Get(), nullptr));
  } else if (RefreshIfDocumentSwapped(pinned_, application_.Get(), true)) {
    Pin(std::move(pinned_));
  }
  return pinned_.workbook != nullptr;
}

const std::wstring& TargetContext::WorkbookKey() const {
  return fullName_.empty() ? plainName_ : fullName_;
}

ComPtr<IDispatch> TargetContext::GetTargetWindowDrv() const {
  if (pinned_.IsValid()) return pinned_.window;
  PaneLog(L"GetTargetWindowDrv: degraded ActiveWindow (no pinned window)\r\n");
  return GetDispProperty(application_.Get(), L"ActiveWindow");
}

ComPtr<IDispatch> TargetContext::ActiveSheetOr(const wchar_t* degradedLine) const {
  if (pinned_.IsValid()) return GetDispProperty(pinned_.window.Get(), L"ActiveSheet");
  PaneLog(degradedLine);
  return GetDispProperty(application_.Get(), L"ActiveSheet");
}

ComPtr<IDispatch> TargetContext::GetTargetActiveSheetDrv() const {
  return ActiveSheetOr(L"GetTargetActiveSheetDrv: degraded ActiveSheet (no pinned window)\r\n");
}

ComPtr<IDispatch> TargetContext::GetTargetSelectionDrv() const {
  return GetDispProperty(GetTargetWindowDrv().Get(), L"Selection");
}

ComPtr<IDispatch> TargetContext::DegradingActiveSheet() const {
  return ActiveSheetOr(L"GetActiveSheetDispatch: degraded App.ActiveSheet (no pinned window)\r\n");
}

ComPtr<IDispatch> TargetContext::GetActiveSheetDispatch() const {
  ComPtr<IDispatch> sheet = DegradingActiveSheet();
  PaneLog(sheet != nullptr ? L"GetActiveSheetDispatch: OK\r\n"
                           : L"GetActiveSheetDispatch: no active sheet\r\n");
  return sheet;
}

std::wstring TargetContext::GetActiveSheetName() const {
  return GetStringProperty(DegradingActiveSheet().Get(), L"Name");
}

ComPtr<IDispatch> TargetContext::WorkbookOr(const wchar_t* degradedLine) const {
  if (pinned_.workbook != nullptr) return pinned_.workbook;
  PaneLog(degradedLine);
  return GetDispProperty(application_.Get(), L"ActiveWorkbook");
}

ComPtr<IDispatch> TargetContext::GetActiveWorkbookSheets() const {
  const ComPtr<IDispatch> workbook =
      WorkbookOr(L"GetActiveWorkbookSheets: degraded ActiveWorkbook (no pinned workbook)\r\n");
  ComPtr<IDispatch> sheets = GetDispProperty(workbook.Get(), L"Worksheets");
  return sheets != nullptr ? sheets : GetDispProperty(workbook.Get(), L"Sheets");
}

ComPtr<IDispatch> TargetContext::GetActiveWorkbookWorksheets() const {
  const ComPtr<IDispatch> workbook =
      WorkbookOr(L"GetActiveWorkbookWorksheets: degraded ActiveWorkbook (no pinned book)\r\n");
  return GetDispProperty(workbook.Get(), L"Worksheets");
}

void TargetContext::ReleaseReferences() {
  pinned_.window = nullptr;
  pinned_.workbook = nullptr;
  application_ = nullptr;
}

}  // namespace qv
