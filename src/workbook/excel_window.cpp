#include "workbook/excel_window.h"

#include <windows.h>

#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/automation.h"
#include "workbook/gone_object.h"

namespace qv {
namespace {

/// The host's own comparison of file names.
bool EqualsIgnoreCase(const std::wstring& left, const std::wstring& right) {
  return CompareStringOrdinal(left.c_str(), static_cast<int>(left.size()), right.c_str(),
                              static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

/// What tells workbooks apart. Hosts hand out new objects for the same workbook, so objects are never
/// compared.
std::wstring FullOrPlainName(IDispatch* workbook) {
  std::wstring fullName = GetStringProperty(workbook, L"FullName");
  return fullName.empty() ? GetStringProperty(workbook, L"Name") : fullName;
}

/// First workbook whose name equals the caption; `hits` receives how many do.
ComPtr<IDispatch> FindWorkbookByCaption(IDispatch* application, const std::wstring& caption, int& hits) {
  ComPtr<IDispatch> match;
  const ComPtr<IDispatch> workbooks = GetDispProperty(application, L"Workbooks");
  const std::int32_t count = GetIntProperty(workbooks.Get(), L"Count");
  for (std::int32_t i = 1; i <= count; ++i) {
    ComPtr<IDispatch> workbook = GetCollectionItem(workbooks.Get(), Variant(i));
    if (workbook == nullptr || !EqualsIgnoreCase(GetStringProperty(workbook.Get(), L"Name"), caption))
      continue;
    if (++hits == 1) match = std::move(workbook);
  }
  return match;
}

/// A window's parent is its workbook in Excel, but the Application in some hosts; only the latter has
/// workbooks.
ComPtr<IDispatch> ParentWorkbook(IDispatch* window) {
  ComPtr<IDispatch> parent = GetDispProperty(window, L"Parent");
  if (FullOrPlainName(parent.Get()).empty()) return nullptr;
  if (GetDispProperty(parent.Get(), L"Workbooks") != nullptr) return nullptr;
  return parent;
}

/// The workbook of a window that does not tell it. Captions need not be names ("Book.xlsx:2", "Book.xlsx  -
/// Read-Only").
ComPtr<IDispatch> FindWorkbookOfWindow(IDispatch* window, IDispatch* application,
                                       const std::wstring& caption) {
  int hits = 0;
  ComPtr<IDispatch> workbook = FindWorkbookByCaption(application, caption, hits);
  PaneLog(Concat(L"ExcelWindow FromWindowDisp: Window.Workbook unavailable, name-match hits=", hits,
                 L" caption=", caption, L"\r\n"));
  if (hits == 1) return workbook;
  if (ComPtr<IDispatch> parent = ParentWorkbook(window)) return parent;
  if (workbook == nullptr) {
    PaneLog(Concat(L"ExcelWindow FromWindowDisp: Window.Workbook unavailable caption=", caption, L"\r\n"));
  }
  return workbook;
}

/// The first window that is still open, by its caption.
ComPtr<IDispatch> FirstLiveWindow(IDispatch* application) {
  ComPtr<IDispatch> first;
  const ComPtr<IDispatch> windows = GetDispProperty(application, L"Windows");
  const std::int32_t count = GetIntProperty(windows.Get(), L"Count");
  int live = 0;
  for (std::int32_t i = 1; i <= count; ++i) {
    ComPtr<IDispatch> window = GetCollectionItem(windows.Get(), Variant(i));
    if (GetStringProperty(window.Get(), L"Caption").empty()) continue;
    if (++live == 1) first = std::move(window);
  }
  PaneLog(Concat(L"ExcelWindow RefreshIfDocumentSwapped: ActiveWindow unavailable, windows=", count,
                 L" live=", live, L"\r\n"));
  return first;
}

void RebindClosedWindow(ExcelWindow& pinned, IDispatch* application) {
  PaneLog(L"ExcelWindow RefreshIfDocumentSwapped: pinned window caption empty\r\n");
  ComPtr<IDispatch> window = GetDispProperty(application, L"ActiveWindow");
  if (window == nullptr) window = FirstLiveWindow(application);
  ExcelWindow rebuilt = ExcelWindow::FromWindowDisp(window.Get(), application);
  PaneLog(Concat(L"ExcelWindow RefreshIfDocumentSwapped: pinned window dead, rebound from \"", pinned.caption,
                 L"\" to \"", rebuilt.caption, L"\"\r\n"));
  pinned = std::move(rebuilt);
}

bool FollowSwappedWorkbook(ExcelWindow& pinned, IDispatch* application) {
  ExcelWindow rebuilt = ExcelWindow::FromWindowDisp(pinned.window.Get(), application);
  // A workbook that cannot be found now (a busy host) is no reason to lose the one that is pinned.
  if (rebuilt.workbook == nullptr) return false;
  if (FullOrPlainName(rebuilt.workbook.Get()) == FullOrPlainName(pinned.workbook.Get())) {
    // One that was saved under another name is still the same.
    pinned.workbookName = std::move(rebuilt.workbookName);
    return false;
  }
  PaneLog(Concat(L"ExcelWindow RefreshIfDocumentSwapped: workbook changed from \"", pinned.workbookName,
                 L"\" to \"", rebuilt.workbookName, L"\"\r\n"));
  pinned = std::move(rebuilt);
  return true;
}

}  // namespace

ExcelWindow ExcelWindow::FromWindowDisp(IDispatch* window, IDispatch* application) {
  ExcelWindow target;
  if (window == nullptr) return target;
  target.window = window;
  target.hwnd = GetIntProperty(window, L"Hwnd");
  target.identity = reinterpret_cast<std::intptr_t>(window);
  target.caption = GetStringProperty(window, L"Caption");
  target.workbook = GetDispProperty(window, L"Workbook");
  if (target.workbook == nullptr) target.workbook = FindWorkbookOfWindow(window, application, target.caption);
  target.workbookName = FileNameOf(FullOrPlainName(target.workbook.Get()));
  return target;
}

ExcelWindow ExcelWindow::ResolveForInvocation(IDispatch* application, IDispatch* ribbonControl) {
  if (ribbonControl != nullptr) {
    const ComPtr<IDispatch> context = GetDispProperty(ribbonControl, L"Context");
    ExcelWindow target = FromWindowDisp(context.Get(), application);
    if (target.IsValid()) return target;
  }
  const ComPtr<IDispatch> active = GetDispProperty(application, L"ActiveWindow");
  PaneLog(L"ExcelWindow ResolveForInvocation: Context unavailable, using ActiveWindow\r\n");
  return FromWindowDisp(active.Get(), application);
}

std::wstring ExcelWindow::WindowIdentity() const {
  return Concat(L"hwnd=0x", Hex{static_cast<std::uint64_t>(hwnd), 16, true}, L" ptr=", identity, L" id=",
                caption);
}

bool IsClosedWindow(IDispatch* window) {
  // A closed window has no caption any more. Any other failure tells nothing, and must not cost a pane its
  // window.
  Variant caption;
  HostAnswer answer;
  answer.hr = GetProperty(window, L"Caption", caption, &answer.exceptionCode);
  return answer.Ok() ? caption.Text().empty() : IsObjectGone(answer);
}

bool RefreshIfDocumentSwapped(ExcelWindow& pinned, IDispatch* application, bool rebind) {
  if (!pinned.IsValid()) return false;
  if (!IsClosedWindow(pinned.window.Get())) return FollowSwappedWorkbook(pinned, application);
  if (rebind) RebindClosedWindow(pinned, application);
  return rebind;
}

bool SheetBelongsToTarget(IDispatch* sheet, const ExcelWindow& target) {
  if (target.workbookName.empty()) return true;
  if (sheet == nullptr) return false;
  const ComPtr<IDispatch> parent = GetDispProperty(sheet, L"Parent");
  const std::wstring name = FullOrPlainName(parent.Get());
  const std::wstring targetName = FullOrPlainName(target.workbook.Get());
  // Without the workbook object only its file name is left to compare.
  return targetName.empty() ? FileNameOf(name) == target.workbookName : name == targetName;
}

}  // namespace qv
