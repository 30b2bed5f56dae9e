#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "host/control_container.h"
#include "host/document_layout.h"

namespace qv::devhost {

class DocumentWindow;

/// A task pane docked in a document window: caption, splitter and one hosted control. It closes itself when
/// the document window goes first. UI thread.
class PaneFrame {
 public:
  /// Document window and log are borrowed. Throws std::runtime_error when the control cannot be created or
  /// activated.
  PaneFrame(const std::wstring& progId, const std::wstring& title, bool visible, DocumentWindow& document,
            CallLog& log);
  PaneFrame(const PaneFrame&) = delete;
  PaneFrame& operator=(const PaneFrame&) = delete;
  ~PaneFrame();

  /// The whole pane; null after `Close`.
  [[nodiscard]] HWND Window() const { return window_; }
  [[nodiscard]] const std::wstring& Title() const { return title_; }
  [[nodiscard]] ControlContainer& Container() { return *container_; }
  [[nodiscard]] bool IsOpen() const { return window_ != nullptr; }
  /// The window it is docked in; null after `Close`.
  [[nodiscard]] DocumentWindow* Document() const { return document_; }

  /// What is to be called after the pane was shown or hidden and after it was docked elsewhere, by whomever.
  void SetObservers(std::function<void()> onVisible, std::function<void()> onDock) {
    onVisible_ = std::move(onVisible);
    onDock_ = std::move(onDock);
  }

  /// Whether it shows when its document window does.
  [[nodiscard]] bool IsVisible() const { return isVisible_; }
  void SetVisible(bool visible);
  [[nodiscard]] PaneDock Dock() const { return dock_; }
  void SetDock(PaneDock dock);
  /// Size of the control's place in pixels.
  [[nodiscard]] SIZE ContentSize() const;
  /// The same in points, as the add-in sees it; the width of a pane that has none of its own is 0.
  [[nodiscard]] int WidthPt() const;
  [[nodiscard]] int HeightPt() const;
  /// Asks for another width or height, in points. The window may give less. False when the dock position
  /// does not allow it.
  [[nodiscard]] bool SetWidthPt(int points);
  [[nodiscard]] bool SetHeightPt(int points);
  /// The width as a user drags it, by the mouse's messages; false when there is no splitter to drag.
  [[nodiscard]] bool DragWidthPt(int points);

  /// What the pane asks its document window for, and the place it gets.
  [[nodiscard]] PaneWish Wish() const { return {isVisible_, dock_, width_, height_}; }
  void Place(const RECT& outer);

  /// Closes the control, then the window. What leaked adds up over the frame's life; see `Leaks`.
  void Close();
  [[nodiscard]] ControlContainer::Leaks Leaks() const { return leaks_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void CreateWindows();
  /// Closes the control and forgets the window, which is handed to the caller.
  HWND Leave();
  void Paint();
  /// Width that the content gets with the mouse at `x`, were it taken without an offset.
  [[nodiscard]] int WidthAt(int x) const;
  void Drag(int x);
  void Hover(bool close);
  void Arrange();
  [[nodiscard]] PaneLayout Parts() const;
  [[nodiscard]] bool IsHit(LPARAM position, RECT PaneLayout::*part) const;

  std::wstring title_;
  DocumentWindow* document_;
  HWND window_ = nullptr;
  HWND content_ = nullptr;
  bool isVisible_;
  PaneDock dock_ = PaneDock::kRight;
  int width_;
  int height_;
  bool isDragging_ = false;
  /// Between the mouse and the content's edge while it drags, in pixels.
  int grab_ = 0;
  bool isCloseHot_ = false;
  std::unique_ptr<ControlContainer> container_;
  ControlContainer::Leaks leaks_;
  std::function<void()> onVisible_;
  std::function<void()> onDock_;
};

}  // namespace qv::devhost
