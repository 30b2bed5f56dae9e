#pragma once

#include <nlohmann/json.hpp>

#include "engines/grid_snapshot.h"

namespace qv::devhost::calc {

/// What `office/grid.py` gathered. Throws nlohmann::json::exception for anything else.
[[nodiscard]] GridSnapshot GridFromJson(const nlohmann::json& grid);

}  // namespace qv::devhost::calc
