#pragma once

#include <windows.h>

namespace qv {

/// What happens to the pane's window. UI thread; after `OnWindowDestroyed` nothing more comes.
class PaneWindowEvents {
 public:
  virtual ~PaneWindowEvents() = default;
  /// Inside the window's creation.
  virtual void OnWindowCreated(HWND window, HWND parent) = 0;
  virtual void OnWindowResized() = 0;
  virtual void OnWindowFocused() = 0;
  /// One of the timers of pane_timers.h is due. Nothing that calls the host or pumps messages belongs here.
  virtual void OnWindowTimer(UINT_PTR timer) = 0;
  /// A posted task arrived. The pane may be destroyed while it runs.
  virtual void OnWindowTask(LPARAM task) = 0;
  /// The window goes away, by `Destroy` or with its parent.
  virtual void OnWindowDestroyed() = 0;
};

/// The child window that a pane puts into the host's task pane; a web view fills it. UI thread.
class PaneWindow {
 public:
  /// `events` outlives the window.
  explicit PaneWindow(PaneWindowEvents& events) : events_(events) {}
  PaneWindow(const PaneWindow&) = delete;
  PaneWindow& operator=(const PaneWindow&) = delete;
  ~PaneWindow();

  /// Creates the visible window at `position` (parent's client coordinates, pixels) unless it exists.
  [[nodiscard]] bool Create(HWND parent, const RECT& position);
  void Destroy();

  /// Null while there is none.
  [[nodiscard]] HWND Handle() const { return handle_; }
  /// Puts the window into this parent (null: the one that it has) at this place, shown or hidden as it is.
  void Place(HWND parent, const RECT& position);
  /// Shows the window where it is.
  void Show();
  void Hide();

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  /// True when the message needs no default handling.
  bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam);

  PaneWindowEvents& events_;
  HWND handle_ = nullptr;
};

}  // namespace qv
