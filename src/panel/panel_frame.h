#pragma once

#include <windows.h>

#include <string>

namespace qv {

/// What happens to a frame. UI thread.
class PanelFrameEvents {
 public:
  virtual ~PanelFrameEvents() = default;
  virtual void OnFrameResized() = 0;
  virtual void OnFrameFocused() = 0;
  /// The frame moved on the screen.
  virtual void OnFrameMoved() = 0;
  /// The user closes the frame, which stays until `Destroy`. Inside the window's own message: nothing here
  /// may destroy it or call the host.
  virtual void OnFrameClosing() = 0;
  /// The time of `StartTimer` is over; comes again and again until the frame is gone or the timer stopped.
  virtual void OnFrameTimer() {}
  /// The frame goes away, by `Destroy` or with somebody else's help.
  virtual void OnFrameDestroyed() = 0;
};

/// A top-level window beside the host's own, for one web view. UI thread.
class PanelFrame {
 public:
  /// `events` outlives the frame.
  explicit PanelFrame(PanelFrameEvents& events) : events_(events) {}
  PanelFrame(const PanelFrame&) = delete;
  PanelFrame& operator=(const PanelFrame&) = delete;
  ~PanelFrame();

  /// Creates the visible frame unless it exists: in the middle of the screen on which `beside` is, at most
  /// `size` large (pixels at 96 DPI).
  [[nodiscard]] bool Create(const std::wstring& title, SIZE size, HWND beside);
  void Destroy();

  [[nodiscard]] bool IsOpen() const { return handle_ != nullptr; }
  [[nodiscard]] HWND Handle() const { return handle_; }
  void SetTitle(const std::wstring& title);
  void Hide();
  /// The frame's one timer.
  void StartTimer(UINT milliseconds);
  void StopTimer();
  /// Shows it, restored when it is minimised, and brings it to the foreground.
  void Raise();

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  /// True when the message needs no default handling.
  bool OnMessage(UINT message, LPARAM lparam);

  void Fill(const RECT& place);

  PanelFrameEvents& events_;
  HWND handle_ = nullptr;
};

}  // namespace qv
