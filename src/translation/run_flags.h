#pragma once

#include <atomic>

namespace qv {

/// The switches between the UI thread, which sets them, and one run's worker, which obeys. A superseded run
/// is a cancelled one. Any thread.
class RunFlags {
 public:
  void Cancel() { cancelled_ = true; }
  void SetPaused(bool paused) { paused_ = paused; }

  [[nodiscard]] bool IsCancelled() const { return cancelled_; }
  [[nodiscard]] bool IsPaused() const { return paused_; }

  /// Blocks while paused. False when the run is cancelled.
  [[nodiscard]] bool Pass() const;

 private:
  std::atomic<bool> cancelled_{false};
  std::atomic<bool> paused_{false};
};

}  // namespace qv
