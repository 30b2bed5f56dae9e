#pragma once

#include <string>

namespace qv {

/// A name for a file in the user's temporary folder that no other program has; what has it is deleted with
/// this object.
class TemporaryFile {
 public:
  /// The name begins with the first three letters of `prefix` and ends in `extension` (".png").
  TemporaryFile(const wchar_t* prefix, const wchar_t* extension);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { Delete(); }

  /// Empty when there is no temporary folder.
  [[nodiscard]] const std::wstring& Path() const { return path_; }
  void Delete();

 private:
  /// The empty file that keeps the name unique.
  std::wstring placeholder_;
  std::wstring path_;
};

}  // namespace qv
