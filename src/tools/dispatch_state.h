#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "foundation/unique_handle.h"

namespace qv {

/// What one call shares between the thread that waits and the task on the UI thread; gone when both have let
/// go. Any thread.
class DispatchState {
 public:
  /// Null when the system gives no event.
  [[nodiscard]] static std::shared_ptr<DispatchState> Create() {
    UniqueKernelHandle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    return event ? std::make_shared<DispatchState>(std::move(event)) : nullptr;
  }
  explicit DispatchState(UniqueKernelHandle event) : event_(std::move(event)) {}

  /// The tool has run.
  void Complete(std::wstring result) {
    {
      const std::lock_guard lock(mutex_);
      result_ = std::move(result);
    }
    SetEvent(event_.Get());
  }
  /// The caller shall wait no longer.
  void Abandon() const { SetEvent(event_.Get()); }

  /// WAIT_OBJECT_0 once completed or abandoned.
  [[nodiscard]] DWORD Wait(DWORD limitMs) const { return WaitForSingleObject(event_.Get(), limitMs); }
  /// Nothing when abandoned.
  [[nodiscard]] std::optional<std::wstring> TakeResult() {
    const std::lock_guard lock(mutex_);
    return std::exchange(result_, std::nullopt);
  }

 private:
  UniqueKernelHandle event_;
  std::mutex mutex_;
  std::optional<std::wstring> result_;
};

}  // namespace qv
