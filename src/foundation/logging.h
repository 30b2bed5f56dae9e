#pragma once

#include <string>
#include <string_view>

#include "foundation/file_io.h"

namespace qv {

// Two trace files in one per-user folder: the pane trace (UTF-16, every general line) and the translate trace
// (bytes, structured events). Any thread may log; every failure inside is swallowed; no file stays open
// between writes.

/// The folder chosen once per process, or empty when none is writable.
[[nodiscard]] const std::wstring& GetLogDirectory();

/// Full path of the pane trace log, or empty.
[[nodiscard]] std::wstring GetPaneTraceLogPath();

/// The general diagnostic line. Callers' texts normally end in "\r\n" already; the writer adds one more, so
/// an entry is followed by an empty line.
void PaneLog(std::wstring_view text);

/// What a pane adds to its own diagnostic lines. Handles are printed as numbers only.
struct PaneLogIdentity {
  const void* window = nullptr;
  const void* parent = nullptr;
  /// 0 when no local service is bound.
  int localPort = 0;
};

/// The pane control's own diagnostic line: message, HRESULT, window handles and port.
void LogPaneDiagnostic(const PaneLogIdentity& pane, std::wstring_view message, long hr);

/// One record of the translate trace. `event` is a dotted name; `detail` is converted to UTF-8; the whole
/// record is cut at 1535 bytes.
void TraceTranslateEvent(std::string_view event, std::wstring_view detail);

/// Writes prefix, text and a line end as raw UTF-16 units in three separate open-write-close steps.
void AppendToLogFile(const std::wstring& path, std::wstring_view prefix, std::wstring_view text);

/// Creates the folder when missing and tries a file in it.
[[nodiscard]] bool ProbeDirectoryWritable(const std::wstring& directory);

}  // namespace qv
