#pragma once

#include <string>
#include <vector>

namespace qv {

/// Names of the installed font families, each once, sorted without regard to case; families for vertical
/// writing ('@' names) are left out.
[[nodiscard]] std::vector<std::wstring> InstalledFontFamilies();

}  // namespace qv
