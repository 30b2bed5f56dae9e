#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "foundation/log_text.h"

namespace qv {

// Choosing the log folder and keeping it small. Every failure is swallowed.

/// Where the log folder may be, and where to say which one was taken.
struct LogFolderPlaces {
  /// The user's local application-data folder; empty when there is none.
  std::wstring localAppData;
  /// Folder of the add-in's DLL; empty when unknown.
  std::wstring moduleDirectory;
  /// The debugger stream.
  std::function<void(const std::wstring& line)> say;
};

/// The first writable of "<local application data>\Quorvantis\log" and "<module folder>\log", created when
/// missing; empty when neither is. Logs that earlier fallbacks left in the module's folder are pruned on the
/// way.
[[nodiscard]] std::wstring ChooseLogDirectory(const LogFolderPlaces& places);

/// Local time of now.
[[nodiscard]] LocalTime CurrentLocalTime();

/// Moves an oversized log aside under a name with the given time, over an earlier one of that name.
void RotateLogFile(const std::wstring& path, const LocalTime& time);

/// Deletes logs of the folder that are more than three days old.
void PruneOldLogs(const std::wstring& directory);

/// Deletes the oldest logs of the folder until all of them hold at most 50 MiB.
void CapLogFolderSize(const std::wstring& directory);

}  // namespace qv
