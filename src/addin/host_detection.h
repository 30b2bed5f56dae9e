#pragma once

#include <string_view>

namespace qv {

/// Whether an application is WPS Spreadsheets, by its "Name" and "Path". Case matters.
[[nodiscard]] bool IsWpsApplication(std::wstring_view name, std::wstring_view path);

}  // namespace qv
