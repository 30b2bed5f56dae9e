#pragma once

#include <chrono>
#include <thread>

#include "foundation/pane_context.h"

namespace qv {

/// How long a full message queue is waited for; the host that does not read its messages for so long is not
/// coming back.
inline constexpr auto kPostPatience = std::chrono::seconds(60);
inline constexpr auto kPostPause = std::chrono::milliseconds(20);

/// Posts a function as a task of the pane; a full queue is tried again. False when the pane is closing, the
/// patience is at its end, or `isWanted` says no, which is asked before each further try. Worker thread.
template <typename Task, typename Wanted>
[[nodiscard]] bool PostPatiently(PaneContext& pane, const Task& task, std::chrono::milliseconds patience,
                                 const Wanted& isWanted) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!pane.Tasks().PostFunction(task)) {
    if (pane.IsClosing() || !isWanted() || std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(kPostPause);
  }
  return true;
}

/// The same for what is wanted as long as the pane lives.
template <typename Task>
[[nodiscard]] bool PostPatiently(PaneContext& pane, const Task& task) {
  return PostPatiently(pane, task, kPostPatience, [] { return true; });
}

}  // namespace qv
