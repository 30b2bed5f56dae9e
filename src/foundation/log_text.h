#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

// The rules of the trace logs that need no file system: line formats, names, and which files go.

/// A moment in local time, fields as people write them.
struct LocalTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
};

/// "[2026-03-01 09:08:07.006 tid=42] ", ahead of general lines.
[[nodiscard]] std::wstring PaneLinePrefix(const LocalTime& time, std::uint32_t threadId);

/// The same without the thread, ahead of a pane's own diagnostic lines.
[[nodiscard]] std::wstring PaneDiagnosticPrefix(const LocalTime& time);

/// A pane's own diagnostic line. Handles are given by value and printed in hexadecimal.
[[nodiscard]] std::wstring PaneDiagnosticLine(std::uint32_t threadId, std::wstring_view message,
                                              std::uint32_t hr, std::uint64_t window, std::uint64_t parent,
                                              int localPort);

/// One record of the translate trace, cut at 1535 bytes. A null `event` (no data pointer) is written as
/// "(null)".
[[nodiscard]] std::string TranslateTraceRecord(const LocalTime& time, std::string_view event,
                                               std::string_view detail);

/// Name that an oversized log is moved to: its path up to the last "." anywhere, the time, ".log".
[[nodiscard]] std::wstring RotatedLogPath(std::wstring_view path, const LocalTime& time);

/// Whether a log of this many bytes is moved aside: from 52,428,801 on.
[[nodiscard]] bool NeedsRotation(std::uint64_t bytes);

/// Whether a maintenance pass is due at a millisecond tick; a last pass of 0 means never.
[[nodiscard]] bool IsMaintenanceDue(std::uint64_t lastTick, std::uint64_t nowTick);

/// Whether a file name is one that pruning may touch: begins with "Quorvantis" in any case, contains ".log".
[[nodiscard]] bool IsManagedLogName(std::wstring_view fileName);

/// Whether a file is older than three days. Both times in 100-nanosecond units since 1601.
[[nodiscard]] bool IsTooOld(std::uint64_t lastWrite, std::uint64_t now);

/// One log file of a folder.
struct LogFile {
  std::wstring path;
  std::uint64_t bytes = 0;
  /// 100-nanosecond units since 1601.
  std::uint64_t lastWrite = 0;
};

/// Calls `remove` (true when the file is really gone) for the oldest files until the rest hold at most
/// 52,428,800 bytes. Files that cannot be removed keep counting.
void CapLogFiles(std::vector<LogFile> files, const std::function<bool(const std::wstring& path)>& remove);

}  // namespace qv
