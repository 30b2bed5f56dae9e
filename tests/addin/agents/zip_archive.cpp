#include "zip_archive.h"

#include <zlib.h>

#include <cstdint>

namespace qv {
namespace {

std::string Bytes(std::uint64_t number, int count) {
  std::string bytes;
  for (; count > 0; --count, number >>= 8)
    bytes += static_cast<char>(number & 0xFF);
  return bytes;
}

std::string Deflated(const std::string& contents) {
  z_stream stream{};
  deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  std::string packed(deflateBound(&stream, static_cast<uLong>(contents.size())), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(contents.data()));
  stream.avail_in = static_cast<uInt>(contents.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

}  // namespace

std::string ZipArchive(const std::vector<ZipFile>& files) {
  std::string archive;
  std::string directory;
  for (const ZipFile& file : files) {
    const std::string packed = Deflated(file.contents);
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(file.contents.data()),
                           static_cast<uInt>(file.contents.size()));
    // Version, flags (names in UTF-8), method, time and date, checksum, sizes, lengths of name and extra
    // field.
    const std::string shared = Bytes(20, 2) + Bytes(0x800, 2) + Bytes(8, 2) + Bytes(0, 4) + Bytes(crc, 4) +
                               Bytes(packed.size(), 4) + Bytes(file.contents.size(), 4) +
                               Bytes(file.name.size(), 2) + Bytes(0, 2);
    directory += "PK\x01\x02" + Bytes(20, 2) + shared + Bytes(0, 10) + Bytes(archive.size(), 4) + file.name;
    archive += "PK\x03\x04" + shared + file.name + packed;
  }
  return archive + directory + "PK\x05\x06" + Bytes(0, 4) + Bytes(files.size(), 2) + Bytes(files.size(), 2) +
         Bytes(directory.size(), 4) + Bytes(archive.size(), 4) + Bytes(0, 2);
}

}  // namespace qv
