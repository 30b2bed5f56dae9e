#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qv::devhost {

/// A text of the ribbon: given in the XML, or the name of the callback that gives it. Both empty: none.
struct RibbonText {
  std::wstring fixed;
  std::wstring callback;
};

/// A tab, a group or a button.
struct RibbonItem {
  std::wstring id;
  std::wstring tag;
  RibbonText label;
  RibbonText screentip;
  /// Name of the callback that gives the picture; empty: no picture.
  std::wstring getImage;
  /// Name of the callback of a press; only buttons have one.
  std::wstring onAction;
  bool isLarge = false;
  /// Groups of a tab, buttons of a group.
  std::vector<RibbonItem> children;
};

/// What the host takes from a ribbon's XML.
struct RibbonDescription {
  /// Name of the callback that gets the ribbon object; empty: none.
  std::wstring onLoad;
  std::vector<RibbonItem> tabs;
};

/// Reads a customUI document (schema of 2006/01 or 2009/07) that consists of tabs, groups and buttons. Like
/// Office, which shows nothing at all of a ribbon with one wrong attribute, it refuses what the schema does
/// not allow there. Attributes of the schema that this host has no use for (visibility, key tips, places)
/// are allowed and ignored. Throws std::runtime_error with one line that says what is wrong.
[[nodiscard]] RibbonDescription ReadRibbon(std::wstring_view xml);

}  // namespace qv::devhost
