#pragma once

#include <string>

namespace qv {

/// Keeps two panes of the process from translating one workbook at the same time. Any thread; the lock covers
/// the map only, never a host call.
class WorkbookBusyTable {
 public:
  /// True when `owner` may work on the workbook from now on; an empty key is never refused. A refusal is
  /// logged. `owner` is compared and printed only.
  [[nodiscard]] static bool TryClaimWorkbook(const std::wstring& workbookKey, const void* owner);

  /// Whether anybody holds the workbook; nobody holds an empty key.
  [[nodiscard]] static bool IsClaimed(const std::wstring& workbookKey);

  /// Gives the claim up when `owner` holds it.
  static void ReleaseWorkbook(const std::wstring& workbookKey, const void* owner);
};

}  // namespace qv
