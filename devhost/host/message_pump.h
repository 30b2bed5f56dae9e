#pragma once

#include <windows.h>

#include <functional>

namespace qv::devhost {

/// Dispatches every message that waits for this thread.
void DispatchWaitingMessages();

/// Dispatches messages until the condition holds (asked before the first and after each message) or the time
/// is over. Whether it holds at the end.
[[nodiscard]] bool PumpUntil(const std::function<bool()>& condition, DWORD timeoutMs);

}  // namespace qv::devhost
