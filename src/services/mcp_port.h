#pragma once

#include <cstdint>

namespace qv {

/// Where agents find the tool server: http://127.0.0.1:7878/mcp stands in their configurations.
inline constexpr std::uint16_t kMcpPort = 7878;

}  // namespace qv
