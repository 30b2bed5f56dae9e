#include "host/ribbon_layout.h"

#include <algorithm>

#include "foundation/text.h"

namespace qv::devhost {
namespace {

constexpr int kRows = 3;

bool IsSmall(const ButtonSize& button, GroupForm form) {
  return form != GroupForm::kLarge || !button.isLarge;
}

int SmallWidth(const ButtonSize& button, GroupForm form, const RibbonMetrics& metrics) {
  return form == GroupForm::kIcons ? metrics.IconWidth() : button.compact;
}

/// Buttons from the left, small ones in columns; the area is as wide as they need.
GroupPlace Place(const GroupSize& group, GroupForm form, const RibbonMetrics& metrics) {
  GroupPlace place{form, {0, metrics.header, 0, metrics.Height()}, {}};
  const int rowHeight = (metrics.content - 2 * metrics.padding) / kRows;
  int x = metrics.padding;
  for (std::size_t i = 0; i < group.buttons.size();) {
    const int top = metrics.header + metrics.padding;
    if (!IsSmall(group.buttons[i], form)) {
      place.buttons.push_back(
          {x, top, x + group.buttons[i].large, metrics.header + metrics.content - metrics.padding});
      x += group.buttons[i++].large;
      continue;
    }
    int width = 0;
    const std::size_t first = i;
    for (; i < group.buttons.size() && i < first + kRows && IsSmall(group.buttons[i], form); ++i)
      width = std::max(width, SmallWidth(group.buttons[i], form, metrics));
    for (std::size_t row = 0; row < i - first; ++row) {
      const int y = top + static_cast<int>(row) * rowHeight;
      place.buttons.push_back({x, y, x + width, y + rowHeight});
    }
    x += width;
  }
  const int wanted = group.caption + 2 * metrics.padding;
  const int spare = std::max(0, wanted - (x + metrics.padding));
  for (RECT& button : place.buttons)
    OffsetRect(&button, spare / 2, 0);
  place.area.right = std::max(x + metrics.padding, wanted);
  return place;
}

}  // namespace

RibbonMetrics MakeRibbonMetrics(int largeIcon, int line, int dpi) {
  const auto scaled = [dpi](int length) { return MulDiv(length, dpi, USER_DEFAULT_SCREEN_DPI); };
  RibbonMetrics metrics{};
  metrics.icon = scaled(largeIcon);
  metrics.smallIcon = scaled(16);
  metrics.line = line;
  metrics.padding = scaled(5);
  metrics.header = line + scaled(14);
  // Picture, two lines of label, and room around them; three small rows must fit as well.
  metrics.content = std::max(metrics.icon + 2 * line + scaled(10), kRows * (metrics.smallIcon + scaled(6))) +
                    2 * metrics.padding;
  metrics.caption = line + scaled(5);
  return metrics;
}

std::vector<GroupPlace> LayOutGroups(const std::vector<GroupSize>& groups, int available,
                                     const RibbonMetrics& metrics) {
  std::vector<GroupPlace> places;
  int total = 0;
  for (const auto& group : groups) {
    places.push_back(Place(group, GroupForm::kLarge, metrics));
    total += places.back().area.right;
  }
  for (const GroupForm form : {GroupForm::kCompact, GroupForm::kIcons}) {
    for (std::size_t i = groups.size(); i-- > 0 && total > available;) {
      GroupPlace smaller = Place(groups[i], form, metrics);
      if (smaller.area.right >= places[i].area.right) continue;
      total -= places[i].area.right - smaller.area.right;
      places[i] = std::move(smaller);
    }
  }
  int x = 0;
  for (auto& place : places) {
    const int width = place.area.right;
    OffsetRect(&place.area, x, 0);
    for (RECT& button : place.buttons)
      OffsetRect(&button, x, 0);
    x += width;
  }
  return places;
}

namespace {

/// Chinese, Japanese and Korean text may be broken between any two characters, but for closing marks.
bool IsIdeographic(wchar_t unit) {
  return unit >= 0x2E80 && unit <= 0x9FFF && unit != 0x3001 && unit != 0x3002;
}

/// Words in katakana are names and loan words, which are not broken.
bool IsKatakana(wchar_t unit) {
  return unit >= 0x30A0 && unit <= 0x30FF;
}

bool MayBreakBefore(std::wstring_view label, std::size_t at) {
  const wchar_t before = label[at - 1];
  if (IsKatakana(before) && IsKatakana(label[at])) return false;
  return IsSpace(before) || before == L'-' || before == L'/' ||
         (IsIdeographic(before) && IsIdeographic(label[at]));
}

}  // namespace

std::vector<std::wstring> WrapLabel(std::wstring_view label, int enough,
                                    const std::function<int(std::wstring_view)>& measure) {
  int best = measure(label);
  std::vector<std::wstring> lines{std::wstring(label)};
  if (best <= enough) return lines;
  for (std::size_t at = 1; at < label.size(); ++at) {
    if (!MayBreakBefore(label, at)) continue;
    const auto first = TrimRight(label.substr(0, at));
    const auto second = Trim(label.substr(at));
    if (first.empty() || second.empty()) continue;
    const int width = std::max(measure(first), measure(second));
    if (width >= best) continue;
    best = width;
    lines = {std::wstring(first), std::wstring(second)};
  }
  return lines;
}

}  // namespace qv::devhost
