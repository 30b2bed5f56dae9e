#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "engines/engine.h"
#include "host/font_cache.h"
#include "host/grid_picture.h"
#include "host/sheet_tabs.h"

namespace qv::devhost {

/// A child window that shows one document window of an engine as a spreadsheet program does: headers, cells,
/// scroll bars, sheet tabs. What the user does in it goes through the engine, with the events that come of
/// it. UI thread.
class GridView {
 public:
  /// Both are borrowed and outlive the view. Throws std::runtime_error.
  [[nodiscard]] static std::unique_ptr<GridView> Create(HWND parent, Engine& engine, int windowId);
  GridView(const GridView&) = delete;
  GridView& operator=(const GridView&) = delete;
  ~GridView();

  /// Null once the parent has gone. The parent moves and sizes it.
  [[nodiscard]] HWND Window() const { return window_; }
  /// Reads and paints anew when the engine has changed something since the last time. Cheap otherwise. False
  /// when that has to wait, because the engine refuses or the user is selecting; the old picture stays then.
  [[nodiscard]] bool Refresh();

 private:
  GridView(Engine& engine, int windowId) : engine_(engine), windowId_(windowId) {}

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  /// The result of a message that is handled.
  [[nodiscard]] std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam);

  void Arrange();
  void Read();
  /// Reads again what an action of the user has changed.
  void Show();
  void Paint();
  void UpdateScrollBars();
  [[nodiscard]] SIZE ClientSize() const;
  [[nodiscard]] RECT TabStrip() const;

  void ScrollTo(int row, int column);
  void ScrollBy(int rows, int columns);
  void OnScrollBar(bool vertical, int action);
  void OnWheel(int delta, bool sideways);

  void OnPress(POINT point, bool extends);
  void OnDrag(POINT point);
  void OnRelease();
  void OnKey(UINT key);
  void OnTabStrip(POINT point);
  void SwitchSheet(int direction);
  /// The cells between the anchor and the target, with all that they are merged with, as they would be
  /// selected; the engine learns of it with `Select`.
  void Preview();
  void Select();
  [[nodiscard]] GridArea Selection() const;
  [[nodiscard]] std::optional<GridArea> CellsAt(POINT point) const;
  void MoveSelection(int rows, int columns, bool extends);
  void BringIntoView(const GridArea& cell);

  Engine& engine_;
  int windowId_;
  HWND window_ = nullptr;
  HWND verticalBar_ = nullptr;
  HWND horizontalBar_ = nullptr;
  std::unique_ptr<FontCache> fonts_;
  SheetTabs tabs_;
  std::optional<GridPicture> picture_;
  std::uint64_t seenRevision_ = 0;
  /// What the engine was last told to be visible.
  GridArea toldVisible_;
  /// Where a selection began and where it has got to.
  GridArea anchor_;
  GridArea target_;
  bool dragging_ = false;
  /// Of a wheel, in its units of 120 a notch.
  int wheelRest_ = 0;
};

}  // namespace qv::devhost
