#include "zip_reader.h"

#include <zlib.h>

#include <algorithm>
#include <utility>

namespace qv::devhost {
namespace {

// Offsets and sizes of PKWARE's APPNOTE.TXT, 4.3: all numbers are little-endian.
constexpr std::string_view kEndMark = "PK\x05\x06";
constexpr std::size_t kEndSize = 22;
constexpr std::string_view kCentralMark = "PK\x01\x02";
constexpr std::size_t kCentralSize = 46;
constexpr std::string_view kLocalMark = "PK\x03\x04";
constexpr std::size_t kLocalSize = 30;
constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;

std::uint32_t Number(std::string_view bytes, std::size_t at, int count) {
  std::uint32_t number = 0;
  for (int i = count; i-- > 0;)
    number = number << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
  return number;
}

/// The fixed part of a record and all that follows it; nothing when it is not there.
std::optional<std::string_view> Record(std::string_view archive, std::size_t at, std::string_view mark,
                                       std::size_t size) {
  if (at > archive.size() || archive.size() - at < size) return std::nullopt;
  const std::string_view record = archive.substr(at);
  return record.starts_with(mark) ? std::optional(record) : std::nullopt;
}

std::optional<ZipEntry> ReadEntry(std::string_view archive, std::string_view central) {
  ZipEntry entry;
  entry.method = static_cast<std::uint16_t>(Number(central, 10, 2));
  entry.crc = Number(central, 16, 4);
  entry.size = Number(central, 24, 4);
  const std::size_t packed = Number(central, 20, 4);
  entry.name = central.substr(kCentralSize, Number(central, 28, 2));
  const auto local = Record(archive, Number(central, 42, 4), kLocalMark, kLocalSize);
  if (!local) return std::nullopt;
  const std::size_t begin = kLocalSize + Number(*local, 26, 2) + Number(*local, 28, 2);
  if (begin > local->size() || local->size() - begin < packed) return std::nullopt;
  entry.data = local->substr(begin, packed);
  return entry;
}

std::optional<std::string> Inflated(const ZipEntry& entry) {
  std::string contents(entry.size, '\0');
  z_stream stream{};
  // A negative window size stands for a stream without zlib's own head.
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return std::nullopt;
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(entry.data.data()));
  stream.avail_in = static_cast<uInt>(entry.data.size());
  stream.next_out = reinterpret_cast<Bytef*>(contents.data());
  stream.avail_out = static_cast<uInt>(contents.size());
  const bool complete = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.total_out == entry.size;
  inflateEnd(&stream);
  return complete ? std::optional(std::move(contents)) : std::nullopt;
}

}  // namespace

std::optional<std::vector<ZipEntry>> ReadZipDirectory(std::string_view archive) {
  const std::size_t endAt = archive.rfind(kEndMark);
  const auto end = Record(archive, endAt, kEndMark, kEndSize);
  if (!end) return std::nullopt;
  std::vector<ZipEntry> entries;
  std::size_t at = Number(*end, 16, 4);
  for (std::uint32_t left = Number(*end, 10, 2); left > 0; --left) {
    const auto central = Record(archive, at, kCentralMark, kCentralSize);
    auto entry = central ? ReadEntry(archive, *central) : std::nullopt;
    if (!entry) return std::nullopt;
    entries.push_back(std::move(*entry));
    at += kCentralSize + Number(*central, 28, 2) + Number(*central, 30, 2) + Number(*central, 32, 2);
  }
  return entries;
}

std::optional<std::string> Unpacked(const ZipEntry& entry) {
  std::optional<std::string> contents;
  if (entry.method == kStored && entry.size == entry.data.size()) contents = entry.data;
  if (entry.method == kDeflated) contents = Inflated(entry);
  if (!contents) return contents;
  const auto crc =
      crc32(0, reinterpret_cast<const Bytef*>(contents->data()), static_cast<uInt>(contents->size()));
  return crc == entry.crc ? contents : std::nullopt;
}

bool IsSafeName(std::string_view name) {
  if (name.empty() || name.find_first_of("\\:") != std::string_view::npos || name[0] == '/') return false;
  const std::string padded = "/" + std::string(name) + "/";
  return padded.find("/../") == std::string::npos;
}

}  // namespace qv::devhost
