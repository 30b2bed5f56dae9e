#pragma once

#include <string_view>

namespace qv {

/// Where the first-run welcome keeps that it was shown: the value that is read back.
inline constexpr wchar_t kWelcomeShownValue[] = L"WelcomeShown";

/// The value that is written besides it for a host, "excel", "wps", "wps-excel" or "et" in any case; every
/// other text counts as Word, which shares the key.
[[nodiscard]] const wchar_t* WelcomeValueOfHost(std::wstring_view host);

}  // namespace qv
