#pragma once

#include <oaidl.h>

#include <cstdint>
#include <string>
#include <utility>

#include "foundation/variant.h"
#include "workbook/automation.h"
#include "workbook/excel_window.h"

namespace qv {

/// Which window, workbook and sheet one pane works on: its pinned target first, the host's active ones as a
/// logged "degraded" fallback. Results are counted references or null. Host UI thread.
class TargetContext {
 public:
  /// Null disconnects.
  void SetApplication(ComPtr<IDispatch> application) { application_ = std::move(application); }
  [[nodiscard]] IDispatch* Application() const { return application_.Get(); }

  /// Pins a target; an invalid one unpins.
  void Pin(ExcelWindow target);
  [[nodiscard]] const ExcelWindow& Pinned() const { return pinned_; }
  /// Counts the targets: the same number means that the same one is still pinned, whatever its name.
  [[nodiscard]] std::uint64_t PinSerial() const { return pinSerial_; }

  /// Re-validates the pin (see RefreshIfDocumentSwapped) and its workbook's names. A pane without a pin gets
  /// the window that is active now, until `DropImplicitPin` or the next call. True when a workbook is bound
  /// afterwards.
  [[nodiscard]] bool RefreshPin();

  /// Whether a target is pinned that was given to `Pin`.
  [[nodiscard]] bool IsPinnedOnPurpose() const { return pinned_.IsValid() && !implicit_; }

  /// Unpins what `RefreshPin` chose by itself, so that the pane follows the active window again; a target
  /// that was given to `Pin` stays.
  void DropImplicitPin();

  /// Full name of the pinned workbook, else its plain name, else empty.
  [[nodiscard]] const std::wstring& WorkbookKey() const;

  [[nodiscard]] ComPtr<IDispatch> GetTargetActiveSheetDrv() const;
  /// `answer` as of `GetDispProperty` here and below.
  [[nodiscard]] ComPtr<IDispatch> GetTargetWindowDrv(HostAnswer* answer = nullptr) const;
  [[nodiscard]] ComPtr<IDispatch> GetTargetSelectionDrv(HostAnswer* answer = nullptr) const;
  [[nodiscard]] ComPtr<IDispatch> GetActiveSheetDispatch(HostAnswer* answer = nullptr) const;
  /// Name of the sheet that `GetActiveSheetDispatch` gives; empty when there is none.
  [[nodiscard]] std::wstring GetActiveSheetName() const;
  /// "Worksheets", else "Sheets", of the pinned or active workbook. `answer` (may be null) receives a busy
  /// answer of any of the calls, else the last one.
  [[nodiscard]] ComPtr<IDispatch> GetActiveWorkbookSheets(HostAnswer* answer = nullptr) const;
  /// "Worksheets" of the pinned or active workbook. `answer` as of `GetDispProperty`.
  [[nodiscard]] ComPtr<IDispatch> GetActiveWorkbookWorksheets(HostAnswer* answer = nullptr) const;

  /// Releases every host object; the texts stay for log lines and the workbook key.
  void ReleaseReferences();

 private:
  /// The pinned window's active sheet; without a pin logs the line and takes the Application's.
  [[nodiscard]] ComPtr<IDispatch> ActiveSheetOr(const wchar_t* degradedLine,
                                                HostAnswer* answer = nullptr) const;
  [[nodiscard]] ComPtr<IDispatch> DegradingActiveSheet(HostAnswer* answer = nullptr) const;
  /// The pinned workbook; without one logs the line and takes the active one.
  [[nodiscard]] ComPtr<IDispatch> WorkbookOr(const wchar_t* degradedLine, HostAnswer* answer = nullptr) const;
  /// Takes over the workbook's names as they are now; a name that cannot be read stays.
  void ReadWorkbookNames();

  ComPtr<IDispatch> application_;
  ExcelWindow pinned_;
  /// `RefreshPin` chose the pinned window, not the user.
  bool implicit_ = false;
  std::uint64_t pinSerial_ = 0;
  std::wstring fullName_;
  std::wstring plainName_;
};

}  // namespace qv
