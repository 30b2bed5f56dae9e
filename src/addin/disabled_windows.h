#pragma once

#include <windows.h>

#include <vector>

namespace qv {

/// The windows that take no input while a dialog is open: its owner (may be null) and every other visible
/// top-level window of this thread, so that other documents of the host wait too. Those that took none before
/// are left alone.
class DisabledWindows {
 public:
  DisabledWindows(HWND owner, HWND dialog);
  DisabledWindows(const DisabledWindows&) = delete;
  DisabledWindows& operator=(const DisabledWindows&) = delete;
  ~DisabledWindows() { Enable(); }

  /// Ends it early. Repeated calls do nothing.
  void Enable();

 private:
  std::vector<HWND> windows_;
};

}  // namespace qv
