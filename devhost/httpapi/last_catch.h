#pragma once

#include <utility>

namespace qv::devhost {

/// Runs what a thread of this library does. What it throws, memory that has run out above all, ends the work
/// and not the application's process.
template <typename Body>
void Contain(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    // Nobody is there to hear of it.
    return;
  }
}

}  // namespace qv::devhost
