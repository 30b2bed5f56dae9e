#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <vector>

#include "engines/memory/host.h"

namespace qv::devhost::memory {

/// Steps that carry a fault description out; the description is read as a whole first, so that a bad one
/// changes nothing. Throws std::runtime_error. See MemoryEngine::Fault for the members.
[[nodiscard]] std::vector<std::function<void(Host&)>> FaultStepsFromJson(const nlohmann::json& fault);

}  // namespace qv::devhost::memory
