#pragma once

#include <oaidl.h>

#include <string>

#include "workbook/range_reader.h"
#include "workbook/scan_progress.h"
#include "workbook/unit_list.h"

namespace qv {

/// How one way of reading a range ended.
enum class ScanOutcome {
  kDone,
  /// Another way may still work.
  kFailed,
  /// No other way will: the scan is no longer wanted or the host is busy.
  kStopped,
};

/// One rectangular range that is scanned, in one of the ways of `ScanBulk` and `ScanCells`. Host UI thread.
struct AreaScan {
  RangeReader range;
  RangeGeometry geometry;
  /// The worksheet of the range, borrowed.
  IDispatch* sheet;
  ScanProgress& progress;
};

/// Texts of the log lines that tell the late-bound and the typed bulk read apart.
struct BulkLogTexts {
  const wchar_t* start;
  const wchar_t* geometry;
  const wchar_t* end;
};
extern const BulkLogTexts kLateBoundBulk;
extern const BulkLogTexts kTypedBulk;

/// Reads the range in three calls, and a few more for each merged cell with a text, and adds its texts to
/// `units`. `error` is set when failed.
[[nodiscard]] ScanOutcome ScanBulk(const AreaScan& scan, const BulkLogTexts& texts, UnitList& units,
                                   std::wstring& error);

/// Reads the range cell by cell. A cell that cannot be read is left out and logged; only a busy host ends the
/// scan, because every cell left out in silence would stay untranslated. Failed when no cell could be read.
/// `error` is set when failed or stopped by a busy host.
[[nodiscard]] ScanOutcome ScanCells(const AreaScan& scan, UnitList& units, std::wstring& error);

}  // namespace qv
