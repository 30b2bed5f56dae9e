#pragma once

#include <optional>
#include <string>

namespace qv {

/// What keeps a file or folder from being deleted.
struct RemovalObstacle {
  std::wstring path;
  /// The system's error number.
  unsigned long error = 0;
};

/// Whether Windows' refusal to delete means that this user, or this medium, does not allow it.
[[nodiscard]] bool MeansNoRights(unsigned long error);

/// The first file or folder that would keep a folder from being deleted with all that is in it; nothing when
/// none would, or there is no such folder.
[[nodiscard]] std::optional<RemovalObstacle> FindRemovalObstacle(const std::wstring& directory);

/// Deletes all that is in a folder, write-protected files too. The folder itself stays: one that somebody has
/// open would go only when he closes it, and could not be made again until then. Of a link to another folder
/// the link is deleted, of a file that stands in the folder's place the file. What could not be deleted, or
/// nothing.
[[nodiscard]] std::optional<RemovalObstacle> EmptyFolder(const std::wstring& directory);

}  // namespace qv
