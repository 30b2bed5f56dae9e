#pragma once

#include <winsock2.h>

#include <memory>

#include "httpapi/request_queue.h"

namespace qv::devhost {

// A queue's handle must be one that CloseHandle closes, which nobody else hears of. So it is one end of a
// pipe: when the application closes it, however that happens, a thread at the other end sees the pipe break
// and closes the queue.

/// A new queue, or null when the system gives no pipe or thread.
[[nodiscard]] HANDLE OpenQueue();

/// The queue of a handle, or null.
[[nodiscard]] std::shared_ptr<RequestQueue> QueueOf(HANDLE handle);

}  // namespace qv::devhost
