#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>

#include "panel/webview2_interfaces.h"

namespace qv::devhost {

/// What is shown in a view's window and takes its input.
class ViewContent {
 public:
  /// Nothing for the window's own handling.
  [[nodiscard]] virtual std::optional<LRESULT> OnMessage(HWND window, UINT message, WPARAM wParam,
                                                         LPARAM lParam) = 0;

 protected:
  ~ViewContent() = default;
};

/// The child window that a web view puts into its parent at creation. It goes with the parent when that is
/// destroyed first; everything here is harmless then.
class ViewWindow {
 public:
  /// Null when the parent cannot have a child window.
  [[nodiscard]] static std::unique_ptr<ViewWindow> Create(HWND parent);
  ViewWindow(const ViewWindow&) = delete;
  ViewWindow& operator=(const ViewWindow&) = delete;
  ~ViewWindow();

  /// Called once from within the destruction of the window by somebody else; an empty function forgets it.
  void OnDestroyed(std::function<void()> action) { onDestroyed_ = std::move(action); }

  /// Puts the content into the window, which does not keep it; an empty pointer leaves the background.
  void SetContent(std::weak_ptr<ViewContent> content);

  /// Null after the window was destroyed.
  [[nodiscard]] HWND Handle() const { return window_; }
  void SetParent(HWND parent);
  void SetBounds(const RECT& bounds);
  void SetVisible(bool visible);
  void SetBackground(COREWEBVIEW2_COLOR color);

 private:
  ViewWindow() = default;
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
  COLORREF background_ = RGB(255, 255, 255);
  std::function<void()> onDestroyed_;
  std::weak_ptr<ViewContent> content_;
};

}  // namespace qv::devhost
