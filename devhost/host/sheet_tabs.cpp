#include "host/sheet_tabs.h"

#include <algorithm>

#include "host/drawing_scopes.h"

namespace qv::devhost {
namespace {

/// Of an arrow that leads nowhere.
constexpr COLORREF kIdle = RGB(0xB0, 0xB0, 0xB0);
constexpr int kTabPadding = 14;

GridFont TabFont(bool bold) {
  GridFont font;
  font.bold = bold;
  return font;
}

/// A small triangle that points left or right.
void DrawArrow(HDC dc, const RECT& rect, int direction, COLORREF color) {
  const int half = (rect.bottom - rect.top) / 6;
  const int x = (rect.left + rect.right) / 2;
  const int y = (rect.top + rect.bottom) / 2;
  for (int step = 0; step <= half; ++step) {
    const int column = x + direction * (half / 2 - step);
    Fill(dc, {column, y - step, column + 1, y + step + 1}, color);
  }
}

}  // namespace

void SheetTabs::Arrange(HDC dc, FontCache& fonts, const std::vector<std::wstring>& names, std::size_t active,
                        const RECT& strip) {
  const bool moved = active != active_ || names.size() != names_.size();
  names_ = names;
  active_ = active;
  strip_ = strip;
  widths_.clear();
  // The active name is bold: every tab has room for it, so that none moves when another becomes active.
  for (const std::wstring& name : names_) {
    widths_.push_back(MeasureLine(dc, name, fonts.Get(TabFont(true))).cx +
                      2 * MulDiv(kTabPadding, fonts.Dpi(), USER_DEFAULT_SCREEN_DPI));
  }
  first_ = names_.empty() ? 0 : std::min(first_, names_.size() - 1);
  if (!moved) return;
  first_ = std::min(first_, active_);
  while (first_ < active_ && !FitsFrom(first_, active_))
    ++first_;
}

bool SheetTabs::FitsFrom(std::size_t first, std::size_t last) const {
  int right = TabsLeft();
  for (std::size_t i = first; i <= last && i < widths_.size(); ++i)
    right += widths_[i];
  return right <= strip_.right;
}

int SheetTabs::TabsLeft() const {
  return ArrowRect(1).right;
}

RECT SheetTabs::ArrowRect(int index) const {
  const int width = strip_.bottom - strip_.top;
  return {strip_.left + index * width, strip_.top, strip_.left + (index + 1) * width, strip_.bottom};
}

RECT SheetTabs::TabRect(std::size_t index) const {
  int left = TabsLeft();
  for (std::size_t i = first_; i < index; ++i)
    left += widths_[i];
  return {left, strip_.top, left + widths_[index], strip_.bottom};
}

void SheetTabs::Paint(HDC dc, FontCache& fonts) const {
  const Clipped clipped(dc, strip_);
  Fill(dc, strip_, theme::kBar);
  Fill(dc, {strip_.left, strip_.top, strip_.right, strip_.top + 1}, theme::kLine);
  const bool more = !widths_.empty() && !FitsFrom(first_, widths_.size() - 1);
  DrawArrow(dc, ArrowRect(0), -1, first_ > 0 ? theme::kText : kIdle);
  DrawArrow(dc, ArrowRect(1), 1, more ? theme::kText : kIdle);
  for (std::size_t i = first_; i < names_.size(); ++i) {
    const RECT rect = TabRect(i);
    const bool isActive = i == active_;
    if (isActive) Fill(dc, rect, theme::kSurface);
    Fill(dc, {rect.right - 1, rect.top + 1, rect.right, rect.bottom}, theme::kLine);
    DrawLabel(dc, names_[i], rect, fonts.Get(TabFont(isActive)), isActive ? theme::kAccent : theme::kText,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    const int thickness = std::max(1, MulDiv(2, fonts.Dpi(), USER_DEFAULT_SCREEN_DPI));
    if (isActive) {
      Fill(dc, {rect.left, rect.bottom - thickness, rect.right - 1, rect.bottom}, theme::kAccent);
    }
  }
}

SheetTabs::Hit SheetTabs::HitTest(POINT point) const {
  Hit hit;
  if (!PtInRect(&strip_, point)) return hit;
  for (int arrow = 0; arrow < 2; ++arrow) {
    const RECT rect = ArrowRect(arrow);
    if (PtInRect(&rect, point)) hit.scroll = arrow == 0 ? -1 : 1;
  }
  for (std::size_t i = first_; i < names_.size() && hit.scroll == 0; ++i) {
    const RECT rect = TabRect(i);
    if (PtInRect(&rect, point)) hit.sheet = i;
  }
  return hit;
}

bool SheetTabs::Scroll(int direction) {
  if (names_.empty()) return false;
  const bool can = direction < 0 ? first_ > 0 : !FitsFrom(first_, widths_.size() - 1);
  if (can) first_ = direction < 0 ? first_ - 1 : first_ + 1;
  return can;
}

}  // namespace qv::devhost
