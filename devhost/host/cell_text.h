#pragma once

#include <string>
#include <vector>

#include "host/font_cache.h"
#include "host/line_breaks.h"

namespace qv::devhost {

/// A cell's text, broken into lines and measured, ready to be drawn.
class CellText {
 public:
  /// `wrapWidth` in pixels; 0 keeps everything on one line, as a cell that does not wrap does with its line
  /// feeds. All arguments are borrowed for the object's life.
  CellText(HDC dc, FontCache& fonts, const GridCell& cell, const GridFont& font, int wrapWidth);

  /// Draws the lines closer together where they are higher than the room; programs measure lines tighter than
  /// GDI, and a row that they have fitted would cut the last one.
  void TightenTo(int room);
  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return height_; }
  /// `left` and `top` of the text as a whole; shorter lines are aligned within its width.
  void Draw(int left, int top, GridHorizontal alignment) const;

 private:
  /// Part of a line in one font.
  struct Piece {
    std::size_t start;
    std::size_t length;
    const GridFont* font;
    int width;
  };
  struct Line {
    std::vector<Piece> pieces;
    int width = 0;
    int ascent = 0;
    int descent = 0;
    /// Part of the ascent above the letters.
    int leading = 0;
  };

  [[nodiscard]] std::vector<int> Advances() const;
  void AddLine(const TextLine& line, const std::vector<int>& advances);
  [[nodiscard]] TEXTMETRICW MetricsOf(const GridFont& font) const;

  HDC dc_;
  FontCache& fonts_;
  std::wstring text_;
  /// Covers the text; the one run of a plain text included.
  std::vector<GridRun> runs_;
  std::vector<Line> lines_;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace qv::devhost
