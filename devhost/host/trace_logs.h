#pragma once

#include <string>
#include <vector>

namespace qv::devhost {

/// UTF-8 paths of the add-in's trace logs in the user's log folder, as Windows paths; they may not exist yet.
[[nodiscard]] std::vector<std::string> TraceLogPaths();

}  // namespace qv::devhost
