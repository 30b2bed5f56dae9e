#pragma once

#include <memory>

#include "host/command_line.h"

namespace qv::devhost {

/// The engine that the options name, with their workbook open. Throws std::runtime_error when it cannot be
/// had.
[[nodiscard]] std::unique_ptr<Engine> MakeEngine(const Options& options);

}  // namespace qv::devhost
