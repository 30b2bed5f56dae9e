#pragma once

#include <windows.h>

#include <span>
#include <vector>

namespace qv::devhost {

/// Where a task pane is docked; the values are those of MsoCTPDockPosition.
enum class PaneDock : int { kLeft = 0, kTop = 1, kRight = 2, kBottom = 3, kFloating = 4 };

/// Whether the pane has its width from the user or the add-in, and not from the window.
[[nodiscard]] constexpr bool HasOwnWidth(PaneDock dock) {
  return dock == PaneDock::kLeft || dock == PaneDock::kRight;
}

/// What a task pane asks for. Sizes are those of the pane's content, in pixels.
struct PaneWish {
  bool isVisible;
  PaneDock dock;
  int width;
  int height;
};

/// The places of a document window's parts, in pixels of its client area.
struct DocumentLayout {
  RECT ribbon;
  RECT grid;
  /// One for each wish, with caption and splitter; a hidden pane has the place that it would take.
  std::vector<RECT> panes;
};

/// The parts of a task pane's own window.
struct PaneLayout {
  RECT caption;
  RECT close;
  RECT content;
  /// Where the user drags; empty when the pane has no width of its own.
  RECT splitter;
};

/// Puts the ribbon on top and each pane at its side, the first one outermost. A pane is at most half the
/// window, and all of them together leave something of the grid.
[[nodiscard]] DocumentLayout LayOutDocument(SIZE client, int ribbonHeight, int dpi,
                                            std::span<const PaneWish> panes);
[[nodiscard]] PaneLayout LayOutPane(SIZE outer, PaneDock dock, int dpi);

/// `length` at 96 DPI, in pixels.
[[nodiscard]] inline int Scaled(int length, int dpi) {
  return MulDiv(length, dpi, USER_DEFAULT_SCREEN_DPI);
}

}  // namespace qv::devhost
