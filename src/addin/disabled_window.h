#pragma once

#include <windows.h>

namespace qv {

/// A window that takes no input while this lives, if it took any before. Null for none.
class DisabledWindow {
 public:
  explicit DisabledWindow(HWND window);
  DisabledWindow(const DisabledWindow&) = delete;
  DisabledWindow& operator=(const DisabledWindow&) = delete;
  ~DisabledWindow() { Enable(); }

  /// Ends it early. Repeated calls do nothing.
  void Enable();

 private:
  HWND window_;
};

}  // namespace qv
