#include "addin/disabled_window.h"

#include <utility>

namespace qv {

DisabledWindow::DisabledWindow(HWND window) : window_(window) {
  if (window_ != nullptr && EnableWindow(window_, FALSE)) window_ = nullptr;
}

void DisabledWindow::Enable() {
  if (const HWND window = std::exchange(window_, nullptr)) EnableWindow(window, TRUE);
}

}  // namespace qv
