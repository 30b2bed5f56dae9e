#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qv {

// The scripts by which a run reports to the page. Each tests first that the page has the function, so that an
// older page is not broken.

/// Size of a run: scanned cells, and units to translate.
struct RunSize {
  std::int64_t cells = 0;
  std::size_t units = 0;
};

/// One finished unit.
struct UnitProgress {
  /// 0-based.
  std::size_t index = 0;
  /// The text held nothing to translate.
  bool skipped = false;
  std::wstring_view original;
  std::wstring_view translated;
};

[[nodiscard]] std::wstring RunStartedScript(std::uint64_t runId);
[[nodiscard]] std::wstring ReadyScript(std::uint64_t runId, const RunSize& size);
/// Both in one: a selection is known almost at once.
[[nodiscard]] std::wstring StartedAndReadyScript(std::uint64_t runId, const RunSize& size);
[[nodiscard]] std::wstring ProgressScript(std::uint64_t runId, const RunSize& size,
                                          const UnitProgress& progress);
[[nodiscard]] std::wstring CompleteScript(std::uint64_t runId, const RunSize& size, std::uint64_t elapsedMs,
                                          bool allSheets);
[[nodiscard]] std::wstring CancelledScript();

/// A run over all sheets has moved from the sheet it was started on to another one.
[[nodiscard]] std::wstring RunSheetChangedScript(std::uint64_t runId, std::wstring_view sheetName,
                                                 std::wstring_view sourceSheetName, std::wstring_view mode);
/// The user activated another sheet.
[[nodiscard]] std::wstring ActiveSheetChangedScript(std::wstring_view sheetName);
[[nodiscard]] std::wstring ResumeBlockedScript(std::wstring_view activeSheet, std::wstring_view runSheet);
/// `reason` is "sheet_changed" or "manual".
[[nodiscard]] std::wstring ResumedScript(std::wstring_view reason);

/// Takes the keyboard focus out of the chat input, so that it does not swallow what the user types next.
[[nodiscard]] std::wstring BlurChatInputScript();

[[nodiscard]] std::wstring SheetWriteBlockedScript(std::wstring_view message);
/// A short notice in the page; `kind` is "warn" here.
[[nodiscard]] std::wstring ToastScript(std::wstring_view message, std::wstring_view kind);

}  // namespace qv
