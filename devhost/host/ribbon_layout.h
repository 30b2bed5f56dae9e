#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::devhost {

/// How a group shows its buttons: as they want to be, small with labels in columns of three, small without.
enum class GroupForm { kLarge, kCompact, kIcons };

/// Widths of a button in pixels.
struct ButtonSize {
  bool isLarge;
  int large;
  int compact;
};

struct GroupSize {
  /// Width of the caption below.
  int caption;
  std::vector<ButtonSize> buttons;
};

/// Lengths in pixels that all groups share.
struct RibbonMetrics {
  int icon;
  int smallIcon;
  int line;
  int padding;
  /// Height of the tab headers, of the part with the buttons, and of the captions.
  int header;
  int content;
  int caption;

  [[nodiscard]] int Height() const { return header + content + caption; }
  /// Width of a small button without its label.
  [[nodiscard]] int IconWidth() const { return smallIcon + 2 * padding; }
};

/// `largeIcon` is the size of a large button's picture at 96 DPI; `line` the height of a line of text.
[[nodiscard]] RibbonMetrics MakeRibbonMetrics(int largeIcon, int line, int dpi);

/// One group's place, and its buttons' places in their order. Pixels of the bar.
struct GroupPlace {
  GroupForm form;
  RECT area;
  std::vector<RECT> buttons;
};

/// Puts the groups side by side. When they are too wide, groups shrink from the last to the first, one form
/// after the other, until all fit or nothing is left to shrink.
[[nodiscard]] std::vector<GroupPlace> LayOutGroups(const std::vector<GroupSize>& groups, int available,
                                                   const RibbonMetrics& metrics);

/// A label's one or two lines, broken where the longer line becomes shortest: after a space or a hyphen, or
/// between ideographs. `measure` gives a line's width. Never breaks a label that is at most `enough` wide.
[[nodiscard]] std::vector<std::wstring> WrapLabel(std::wstring_view label, int enough,
                                                  const std::function<int(std::wstring_view)>& measure);

}  // namespace qv::devhost
