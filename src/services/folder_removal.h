#pragma once

#include <optional>
#include <string>

namespace qv {

/// What would keep a folder from being deleted.
struct RemovalObstacle {
  std::wstring path;
  /// A program that runs, or a file that somebody has open; otherwise Windows refuses, mostly for want of
  /// rights.
  bool isInUse = false;
};

/// Whether Windows' refusal to open a file means that somebody uses it.
[[nodiscard]] bool MeansInUse(unsigned long error);

/// The first file or folder that would keep a folder from being deleted with all that is in it; nothing when
/// none would, or there is no such folder.
[[nodiscard]] std::optional<RemovalObstacle> FindRemovalObstacle(const std::wstring& directory);

/// Deletes a folder with all that is in it, write-protected files too; of a link to another folder only the
/// link. What could not be deleted, or empty when the folder is gone.
[[nodiscard]] std::wstring DeleteFolder(const std::wstring& directory);

}  // namespace qv
