#pragma once

#include <functional>

#include "foundation/unique_handle.h"

namespace qv::devhost {

/// A thread that keeps this library in memory until it has ended, also when the host lets go of the library
/// meanwhile. Joined by the destructor.
class PinnedThread {
 public:
  /// Throws std::runtime_error when no thread can be started. What `body` throws ends the thread.
  explicit PinnedThread(std::function<void()> body);
  PinnedThread(const PinnedThread&) = delete;
  PinnedThread& operator=(const PinnedThread&) = delete;
  ~PinnedThread();

 private:
  UniqueKernelHandle thread_;
};

}  // namespace qv::devhost
