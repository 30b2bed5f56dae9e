#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "host/control_container.h"

namespace qv::devhost {

/// A top-level window that plays a task pane and hosts one control.
class PaneFrame {
 public:
  /// Throws std::runtime_error when the control cannot be created or activated. The log is borrowed.
  PaneFrame(const std::wstring& progId, const std::wstring& title, bool visible, CallLog& log);
  PaneFrame(const PaneFrame&) = delete;
  PaneFrame& operator=(const PaneFrame&) = delete;
  ~PaneFrame();

  /// Null after `Close`.
  [[nodiscard]] HWND Window() const { return window_; }
  [[nodiscard]] const std::wstring& Title() const { return title_; }
  [[nodiscard]] ControlContainer& Container() { return *container_; }
  [[nodiscard]] bool IsOpen() const { return window_ != nullptr; }

  [[nodiscard]] bool IsVisible() const;
  void SetVisible(bool visible);
  /// Size of the client area in pixels.
  [[nodiscard]] SIZE ClientSize() const;
  void SetClientSize(SIZE size);

  /// Closes the control, then the window. What leaked adds up over the frame's life; see `Leaks`.
  void Close();
  [[nodiscard]] ControlContainer::Leaks Leaks() const { return leaks_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  std::wstring title_;
  HWND window_ = nullptr;
  std::unique_ptr<ControlContainer> container_;
  ControlContainer::Leaks leaks_;
};

}  // namespace qv::devhost
