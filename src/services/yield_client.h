#pragma once

#include <cstdint>
#include <string>

namespace qv {

/// Asks whoever has the port of this machine to let go of it. True when any HTTP answer came, whatever it
/// says. Waits a few seconds at most; on the calling thread.
[[nodiscard]] bool RequestYield(std::uint16_t port, const std::wstring& userAgent);

}  // namespace qv
