#pragma once

#include <string>
#include <string_view>

namespace qv {

/// One line of the general log about installations.
void InstallerLog(std::wstring_view text);

/// A name for a package in the user's temporary folder; what has it is deleted with this object.
class TemporaryPackage {
 public:
  TemporaryPackage();
  TemporaryPackage(const TemporaryPackage&) = delete;
  TemporaryPackage& operator=(const TemporaryPackage&) = delete;
  ~TemporaryPackage() { Delete(); }

  /// Ends in ".zip"; empty when there is no temporary folder.
  [[nodiscard]] const std::wstring& Path() const { return path_; }
  void Delete();

 private:
  /// The empty file that keeps the name unique.
  std::wstring placeholder_;
  std::wstring path_;
};

/// Brings a package to `packagePath`: by copying a "file:///" location, else by HTTP or HTTPS, following
/// redirections. Only a complete answer of status 200 counts. On failure nothing stays. Worker thread.
[[nodiscard]] bool FetchPackage(const std::wstring& location, const std::wstring& packagePath);

}  // namespace qv
