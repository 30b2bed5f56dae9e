#include "host/cell_text.h"

#include <algorithm>

namespace qv::devhost {
namespace {

std::size_t EndOf(const GridRun& run) {
  return static_cast<std::size_t>(run.start) + static_cast<std::size_t>(run.length);
}

/// Line feeds are not drawn: without wrapping they have no width, with it they end lines.
void WithoutWidth(const std::wstring& text, std::vector<int>& advances) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'\n') advances[i] = 0;
  }
}

}  // namespace

CellText::CellText(HDC dc, FontCache& fonts, const GridCell& cell, const GridFont& font, int wrapWidth)
    : dc_(dc), fonts_(fonts), text_(cell.text), runs_(cell.runs) {
  if (runs_.empty()) runs_.push_back({0, static_cast<int>(text_.size()), font});
  const std::vector<int> advances = Advances();
  if (wrapWidth > 0) {
    for (const TextLine& line : BreakLines(text_, advances, wrapWidth))
      AddLine(line, advances);
  } else {
    AddLine({0, text_.size()}, advances);
  }
}

std::vector<int> CellText::Advances() const {
  std::vector<int> advances(text_.size());
  for (const GridRun& run : runs_) {
    const Selected selected(dc_, fonts_.Get(run.font));
    const auto start = static_cast<std::size_t>(run.start);
    if (run.length <= 0 || EndOf(run) > text_.size()) continue;
    std::vector<int> ends(static_cast<std::size_t>(run.length));
    SIZE size{};
    GetTextExtentExPointW(dc_, text_.data() + start, run.length, 0, nullptr, ends.data(), &size);
    for (std::size_t i = 0; i < ends.size(); ++i)
      advances[start + i] = ends[i] - (i == 0 ? 0 : ends[i - 1]);
  }
  WithoutWidth(text_, advances);
  return advances;
}

TEXTMETRICW CellText::MetricsOf(const GridFont& font) const {
  const Selected selected(dc_, fonts_.Get(font));
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc_, &metrics);
  return metrics;
}

void CellText::AddLine(const TextLine& from, const std::vector<int>& advances) {
  Line line;
  for (const GridRun& run : runs_) {
    const std::size_t start = std::max(from.start, static_cast<std::size_t>(run.start));
    const std::size_t end = std::min(from.end, EndOf(run));
    // An empty line is as high as the text that it stands in.
    const bool standsHere = from.start == from.end && start <= EndOf(run) && line.ascent == 0;
    if (start >= end && !standsHere) continue;
    const TEXTMETRICW metrics = MetricsOf(run.font);
    line.ascent = std::max(line.ascent, static_cast<int>(metrics.tmAscent));
    line.descent = std::max(line.descent, static_cast<int>(metrics.tmDescent));
    line.leading = std::max(line.leading, static_cast<int>(metrics.tmInternalLeading));
    if (start >= end) continue;
    int width = 0;
    for (std::size_t i = start; i < end; ++i)
      width += advances[i];
    line.pieces.push_back({start, end - start, &run.font, width});
    line.width += width;
  }
  width_ = std::max(width_, line.width);
  height_ += line.ascent + line.descent;
  lines_.push_back(std::move(line));
}

void CellText::TightenTo(int room) {
  for (Line& line : lines_) {
    const int cut = std::clamp(height_ - room, 0, line.leading);
    line.ascent -= cut;
    height_ -= cut;
  }
}

void CellText::Draw(int left, int top, GridHorizontal alignment) const {
  SetBkMode(dc_, TRANSPARENT);
  SetTextAlign(dc_, TA_BASELINE | TA_LEFT);
  for (const Line& line : lines_) {
    const int free = width_ - line.width;
    int x = left + (alignment == GridHorizontal::kRight    ? free
                    : alignment == GridHorizontal::kCenter ? free / 2
                                                           : 0);
    for (const Piece& piece : line.pieces) {
      const Selected selected(dc_, fonts_.Get(*piece.font));
      SetTextColor(dc_, piece.font->color);
      std::wstring shown = text_.substr(piece.start, piece.length);
      std::erase(shown, L'\n');
      ExtTextOutW(dc_, x, top + line.ascent, 0, nullptr, shown.data(), static_cast<UINT>(shown.size()),
                  nullptr);
      x += piece.width;
    }
    top += line.ascent + line.descent;
  }
  SetTextAlign(dc_, TA_TOP | TA_LEFT);
}

}  // namespace qv::devhost
