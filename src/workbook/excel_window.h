#pragma once

#include <oaidl.h>

#include <cstdint>
#include <string>

#include "foundation/variant.h"

namespace qv {

/// The resolved target of one pane: a document window and its workbook. Copies share the references. Host UI
/// thread.
struct ExcelWindow {
  /// Window handle as the host reports it; only compared and printed.
  std::intptr_t hwnd = 0;
  /// Second identifier for diagnosis: the address of the window object when it was resolved.
  std::int64_t identity = 0;
  std::wstring caption;
  /// File name of the workbook.
  std::wstring workbookName;
  ComPtr<IDispatch> workbook;
  ComPtr<IDispatch> window;

  [[nodiscard]] bool IsValid() const { return window != nullptr; }

  /// Builds a target from a Window object. Where the host's windows have no "Workbook", the workbook is found
  /// by the caption; when none or several match, by the window's "Parent".
  [[nodiscard]] static ExcelWindow FromWindowDisp(IDispatch* window, IDispatch* application);

  /// The window in which a ribbon control was pressed, else the active one; empty when neither is there.
  /// `ribbonControl` may be null.
  [[nodiscard]] static ExcelWindow ResolveForInvocation(IDispatch* application, IDispatch* ribbonControl);

  /// "hwnd=0x… ptr=… id=<caption>", for log lines.
  [[nodiscard]] std::wstring WindowIdentity() const;
};

/// Whether a Window object's window has been closed: the object is gone, or has no caption. Another failure,
/// such as a busy host's, is no sign of that. A null window is closed.
[[nodiscard]] bool IsClosedWindow(IDispatch* window);

/// Checks a pinned target before a long operation. A closed window is replaced by the active (or first live)
/// one when `rebind` is set, and the target becomes empty when there is none; a window that shows another
/// workbook now is followed. True when `pinned` was changed.
[[nodiscard]] bool RefreshIfDocumentSwapped(ExcelWindow& pinned, IDispatch* application, bool rebind);

/// Whether the sheet lies in the target's workbook; a target without a workbook name accepts every sheet.
[[nodiscard]] bool SheetBelongsToTarget(IDispatch* sheet, const ExcelWindow& target);

}  // namespace qv
