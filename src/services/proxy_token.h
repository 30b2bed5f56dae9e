#pragma once

#include <string>

namespace qv {

/// A new key for the agents that use a proxy, drawn by the system's cryptographic provider. Without one the
/// key comes from the clock, and is as weak as that.
[[nodiscard]] std::wstring GenerateProxyToken();

}  // namespace qv
