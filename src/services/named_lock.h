#pragma once

#include <windows.h>

#include <chrono>

#include "foundation/unique_handle.h"

namespace qv {

/// Something that one thread at a time may do, in all of the user's processes. Given back when it goes away,
/// on the thread that made it; a process that ends gives back what it held.
class NamedLock {
 public:
  /// `name` begins with "Local\\". Waits at most `patience`.
  NamedLock(const wchar_t* name, std::chrono::milliseconds patience)
      : mutex_(CreateMutexW(nullptr, FALSE, name)) {
    const DWORD waited = WaitForSingleObject(mutex_.Get(), static_cast<DWORD>(patience.count()));
    held_ = waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED;
  }
  NamedLock(const NamedLock&) = delete;
  NamedLock& operator=(const NamedLock&) = delete;
  ~NamedLock() {
    if (held_) ReleaseMutex(mutex_.Get());
  }

  /// False when somebody else held it all the time.
  [[nodiscard]] explicit operator bool() const { return held_; }

 private:
  UniqueKernelHandle mutex_;
  bool held_ = false;
};

}  // namespace qv
