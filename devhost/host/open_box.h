#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace qv::devhost {

/// What a message box, a dialog, or the add-in's language dialog shows.
struct BoxContent {
  /// "dialog" or "languages".
  std::string kind;
  std::wstring title;
  /// The message; empty where there is none.
  std::wstring text;
  /// "OK", "Cancel", "Yes", …: by what they do, in whatever language they are labelled.
  std::vector<std::string> buttons;
  /// "information", "warning", "error", "question" or "none".
  std::string icon;
  /// Texts of the list, if the box has one that keeps texts.
  std::vector<std::wstring> rows;
  /// 1-based, 0 when there is no list or nothing is selected.
  int selectedRow = 0;
};

/// The topmost dialog that this thread shows and that takes input, or null.
[[nodiscard]] HWND FindOpenBox();
[[nodiscard]] BoxContent ReadBox(HWND box);
/// Clicks a button by the name that `ReadBox` gives it; false when the box has none of that name.
[[nodiscard]] bool PressBoxButton(HWND box, const std::string& button);
/// Selects a row of the box's list as a click would, 1-based; false when there is no such row.
[[nodiscard]] bool SelectBoxRow(HWND box, int row);
/// Leaves the box by whatever changes least: Cancel, No, or the button it has.
void DismissBox(HWND box);

}  // namespace qv::devhost
