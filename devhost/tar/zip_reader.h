#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::devhost {

/// One entry of a zip archive.
struct ZipEntry {
  /// As it stands in the archive, with "/" between its parts; a folder's ends in one.
  std::string name;
  std::uint16_t method = 0;
  std::uint32_t crc = 0;
  std::uint32_t size = 0;
  /// The stored bytes, a part of the archive's.
  std::string_view data;
};

/// The archive's directory; nothing when it is damaged or cut short. No encryption, no Zip64.
[[nodiscard]] std::optional<std::vector<ZipEntry>> ReadZipDirectory(std::string_view archive);

/// An entry's contents, checked; nothing when they are damaged or packed by an unknown method.
[[nodiscard]] std::optional<std::string> Unpacked(const ZipEntry& entry);

/// Whether a name stays below the folder into which it is unpacked.
[[nodiscard]] bool IsSafeName(std::string_view name);

}  // namespace qv::devhost
