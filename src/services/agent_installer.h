#pragma once

#include <string>

#include "services/agent_answers.h"

namespace qv {

/// What the panel is told, ahead of the path, when Windows refuses with this error number to delete a file of
/// an older copy and nothing has been touched.
[[nodiscard]] const wchar_t* RefusalText(unsigned long error);

/// Where OpenCode's package comes from when neither the page nor config.json ("opencodePackage") says so.
[[nodiscard]] std::wstring DefaultPackageLocation();

/// Fetches OpenCode's package and puts it into `directory`, in the place of any copy that is there. A copy
/// that is in use, or that this user may not delete, is left as it is. One installation at a time. Worker
/// thread; takes minutes.
[[nodiscard]] InstallResult InstallOpencode(const std::wstring& location, const std::wstring& directory);

}  // namespace qv
