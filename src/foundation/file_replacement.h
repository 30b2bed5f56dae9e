#pragma once

#include <string>
#include <string_view>

namespace qv {

/// Whether a write is worth waiting for the disk, which can take as long as the disk likes: so for what a
/// power failure must not take from the user, on worker threads only.
enum class Durability { kPlain, kOnDisk };

/// A file's new contents, written beside it under another name and then moved to its name in one step: nobody
/// ever sees half of it, or no file. Where a call fails nothing has changed, the thread's last error says
/// why, and nothing is left behind once this object is gone.
class FileReplacement {
 public:
  /// `path` need not exist yet. Of a link the file that it leads to is meant.
  FileReplacement(const std::wstring& path, Durability durability);
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  ~FileReplacement();

  /// Writes the new contents beside the file, once. They get the rights and attributes of the file that is
  /// there; where those rights cannot be read or given, what the folder gives to new files. Fails with
  /// ERROR_ACCESS_DENIED where that file is write-protected.
  [[nodiscard]] bool Write(std::string_view bytes);
  /// Puts what was written into the place of the file, or makes it. Of a file that somebody holds Windows
  /// says ERROR_ACCESS_DENIED too.
  [[nodiscard]] bool Replace();
  /// Makes the file; fails with ERROR_ALREADY_EXISTS when something has that name.
  [[nodiscard]] bool Make();

 private:
  bool Move(unsigned long flags);

  std::wstring target_;
  std::wstring beside_;
  Durability durability_;
  bool isBeside_ = false;
};

/// Replaces a file, or makes it, as FileReplacement does.
[[nodiscard]] bool WriteFileAtomically(const std::wstring& path, std::string_view bytes,
                                       Durability durability = Durability::kPlain);

}  // namespace qv
