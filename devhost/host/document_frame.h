#pragma once

#include <windows.h>

#include <functional>

namespace qv::devhost {

/// The one top-level window of a host that keeps all its documents in one frame; each of its children fills
/// it. UI thread.
class DocumentFrame {
 public:
  /// `onClose` is called instead of closing. Throws std::runtime_error when there is no window.
  DocumentFrame(bool isShown, std::function<void()> onClose);
  DocumentFrame(const DocumentFrame&) = delete;
  DocumentFrame& operator=(const DocumentFrame&) = delete;
  ~DocumentFrame();

  [[nodiscard]] HWND Window() const { return window_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  HWND window_ = nullptr;
  std::function<void()> onClose_;
};

}  // namespace qv::devhost
