#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace qv {

/// An empty folder under the temporary folder, removed with all it holds.
class ScratchFolder {
 public:
  ScratchFolder() : path_(std::filesystem::temp_directory_path() / L"qv-foundation-test") {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] std::wstring Path() const { return path_.wstring(); }
  [[nodiscard]] std::wstring Path(std::wstring_view name) const { return (path_ / name).wstring(); }

 private:
  std::filesystem::path path_;
};

inline std::string ReadBytes(const std::wstring& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::wstring& path, std::string_view bytes) {
  std::ofstream file(std::filesystem::path(path), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// Keeps one file of the user's as it is while a test works on it.
class KeptFile {
 public:
  explicit KeptFile(std::wstring path)
      : path_(std::move(path)), existed_(std::filesystem::exists(path_)), bytes_(ReadBytes(path_)) {}
  KeptFile(const KeptFile&) = delete;
  KeptFile& operator=(const KeptFile&) = delete;
  ~KeptFile() {
    std::error_code ignored;
    if (existed_) {
      WriteBytes(path_, bytes_);
    } else {
      std::filesystem::remove(path_, ignored);
    }
  }

  [[nodiscard]] const std::wstring& Path() const { return path_; }

 private:
  std::wstring path_;
  bool existed_;
  std::string bytes_;
};

}  // namespace qv
