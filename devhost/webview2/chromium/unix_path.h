#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv::devhost {

/// An environment variable; nothing when it is not set or empty.
[[nodiscard]] std::optional<std::wstring> EnvironmentText(const wchar_t* name);

/// What Wine shows of an absolute Unix path: on drive Z:.
[[nodiscard]] std::wstring WindowsPathOf(std::wstring_view unixPath);

}  // namespace qv::devhost
