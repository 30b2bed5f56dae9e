#include "host/sheet_tabs.h"

#include <algorithm>

#include "host/selection_paint.h"

namespace qv::devhost {
namespace {

constexpr COLORREF kGround = RGB(0xF3, 0xF3, 0xF3);
constexpr COLORREF kActiveGround = RGB(0xFF, 0xFF, 0xFF);
constexpr COLORREF kLine = RGB(0xC6, 0xC6, 0xC6);
constexpr COLORREF kText = RGB(0x44, 0x44, 0x44);
constexpr COLORREF kIdleText = RGB(0xB0, 0xB0, 0xB0);
constexpr int kTabPadding = 14;

GridFont TabFont(bool bold) {
  GridFont font;
  font.bold = bold;
  return font;
}

void DrawCentered(HDC dc, FontCache& fonts, const std::wstring& text, RECT rect, COLORREF color, bool bold) {
  const Selected selected(dc, fonts.Get(TabFont(bold)));
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, color);
  DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &rect,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

/// A small triangle that points left or right.
void DrawArrow(HDC dc, const RECT& rect, int direction, COLORREF color) {
  const int half = (rect.bottom - rect.top) / 6;
  const int x = (rect.left + rect.right) / 2;
  const int y = (rect.top + rect.bottom) / 2;
  for (int step = 0; step <= half; ++step) {
    const int column = x + direction * (half / 2 - step);
    FillColor(dc, {column, y - step, column + 1, y + step + 1}, color);
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
  const Selected selected(dc, fonts.Get(TabFont(true)));
  for (const std::wstring& name : names_) {
    SIZE size{};
    GetTextExtentPoint32W(dc, name.data(), static_cast<int>(name.size()), &size);
    widths_.push_back(size.cx + 2 * MulDiv(kTabPadding, fonts.Dpi(), USER_DEFAULT_SCREEN_DPI));
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
  FillColor(dc, strip_, kGround);
  FillColor(dc, {strip_.left, strip_.top, strip_.right, strip_.top + 1}, kLine);
  const bool more = !widths_.empty() && !FitsFrom(first_, widths_.size() - 1);
  DrawArrow(dc, ArrowRect(0), -1, first_ > 0 ? kText : kIdleText);
  DrawArrow(dc, ArrowRect(1), 1, more ? kText : kIdleText);
  for (std::size_t i = first_; i < names_.size(); ++i) {
    const RECT rect = TabRect(i);
    const bool isActive = i == active_;
    if (isActive) FillColor(dc, rect, kActiveGround);
    FillColor(dc, {rect.right - 1, rect.top + 1, rect.right, rect.bottom}, kLine);
    DrawCentered(dc, fonts, names_[i], rect, isActive ? kSelectionColor : kText, isActive);
    const int thickness = std::max(1, MulDiv(2, fonts.Dpi(), USER_DEFAULT_SCREEN_DPI));
    if (isActive) {
      FillColor(dc, {rect.left, rect.bottom - thickness, rect.right - 1, rect.bottom}, kSelectionColor);
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
