#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engines/memory/a1.h"
#include "engines/memory/faults.h"

namespace qv::devhost {

// What the engine's callers hand in, and refusals in words for them: std::runtime_error.

/// One or more areas in A1 form.
[[nodiscard]] std::vector<memory::Area> AreasAt(std::string_view address);
/// One cell in A1 form.
[[nodiscard]] memory::Area CellAt(std::string_view address);

/// The object layer's refusals as errors for people.
template <typename Action>
void OrThrow(const std::string& what, Action&& action) {
  try {
    action();
  } catch (const memory::HostError&) {
    throw std::runtime_error(what + ": the host refuses");
  }
}

}  // namespace qv::devhost
