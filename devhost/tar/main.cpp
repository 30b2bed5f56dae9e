// Unpacks a zip archive as the tar.exe of Windows does: tar -xf ARCHIVE -C FOLDER. The folder must exist.
// Silent when all went well; otherwise one line on standard error and status 1.

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include "zip_reader.h"

namespace {

namespace fs = std::filesystem;

int Fail(std::string_view why) {
  std::cerr << "tar: " << why << std::endl;
  return 1;
}

bool Write(const fs::path& path, const std::string& contents) {
  std::error_code ignored;
  fs::create_directories(path.parent_path(), ignored);
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  return static_cast<bool>(file.flush());
}

int Unpack(const fs::path& archive, const fs::path& folder) {
  std::ifstream file(archive, std::ios::binary);
  if (!file) return Fail("Error opening archive: Failed to open the file");
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!fs::is_directory(folder)) return Fail("could not chdir to the folder");
  const auto entries = qv::devhost::ReadZipDirectory(bytes);
  if (!entries) return Fail("Error opening archive: Unrecognized archive format");
  for (const auto& entry : *entries) {
    if (!qv::devhost::IsSafeName(entry.name)) return Fail(entry.name + ": Path contains '..'");
    const fs::path path = folder / fs::path(std::u8string(entry.name.begin(), entry.name.end()));
    std::error_code ignored;
    if (entry.name.back() == '/') {
      fs::create_directories(path, ignored);
      continue;
    }
    const auto contents = qv::devhost::Unpacked(entry);
    if (!contents) return Fail(entry.name + ": damaged");
    if (!Write(path, *contents)) return Fail(entry.name + ": Can't create the file");
  }
  return 0;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 5 || std::wstring_view(arguments[1]) != L"-xf" || std::wstring_view(arguments[3]) != L"-C")
    return Fail("usage: tar -xf ARCHIVE -C FOLDER");
  return Unpack(arguments[2], arguments[4]);
}
