#pragma once

#include <string>
#include <vector>

namespace qv {

struct ZipFile {
  /// With "/" between its parts.
  std::string name;
  std::string contents;
};

/// A zip archive with these files, deflated.
[[nodiscard]] std::string ZipArchive(const std::vector<ZipFile>& files);

}  // namespace qv
