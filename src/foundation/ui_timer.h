#pragma once

#include <windows.h>

#include <functional>

namespace qv {

/// Calls back once after a delay on the UI thread, driven by the message loop. Stopped by its destruction.
class UiTimer {
 public:
  UiTimer() = default;
  UiTimer(const UiTimer&) = delete;
  UiTimer& operator=(const UiTimer&) = delete;
  ~UiTimer() { Stop(); }

  /// Replaces an earlier start. `window` carries the timer and may be null. False when there is no timer to
  /// be had.
  [[nodiscard]] bool Start(HWND window, UINT delayMs, std::function<void()> body);
  void Stop();
  [[nodiscard]] bool IsRunning() const { return id_ != 0; }

 private:
  static void CALLBACK OnTimer(HWND window, UINT message, UINT_PTR id, DWORD time) noexcept;

  HWND window_ = nullptr;
  /// 0 while not running.
  UINT_PTR id_ = 0;
  std::function<void()> body_;
};

}  // namespace qv
