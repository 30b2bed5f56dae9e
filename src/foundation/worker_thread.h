#pragma once

#include <functional>

namespace qv {

/// Runs `body` on a thread of its own, inside the entry guard (`where` names it in the log; a literal). The
/// module stays in memory until the thread has ended, also when the host unloads the add-in meanwhile. Nobody
/// can join it: what it shares with others must be owned jointly. False when no thread could be started; the
/// last error is then the system's code.
[[nodiscard]] bool StartDetachedWorker(const wchar_t* where, std::function<void()> body);

}  // namespace qv
