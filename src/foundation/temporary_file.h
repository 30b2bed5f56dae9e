#pragma once

#include <string>

namespace qv {

/// A new, empty file in the user's temporary folder under a name that nobody can guess, deleted with this
/// object. A file that cannot be deleted is logged.
class TemporaryFile {
 public:
  /// The name begins with `prefix` and ends in `extension` (".png").
  TemporaryFile(const wchar_t* prefix, const wchar_t* extension);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { Delete(); }

  /// Empty when no file can be made.
  [[nodiscard]] const std::wstring& Path() const { return path_; }
  void Delete();

 private:
  std::wstring path_;
};

}  // namespace qv
