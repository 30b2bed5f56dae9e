#pragma once

#include <string>
#include <string_view>

namespace qv {

/// One line of the general log about installations.
void InstallerLog(std::wstring_view text);

/// Brings a package to `packagePath`: by copying a "file:///" location, else by HTTP or HTTPS, following
/// redirections. Only a complete answer of status 200 counts. On failure nothing stays. Worker thread.
[[nodiscard]] bool FetchPackage(const std::wstring& location, const std::wstring& packagePath);

}  // namespace qv
