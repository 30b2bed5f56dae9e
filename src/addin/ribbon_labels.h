#pragma once

#include <string>
#include <string_view>

namespace qv {

// What stands on and beside a ribbon control, in one UI language: the text meant for the spreadsheet's
// ribbon, else the one that all hosts share, else the control's id, so that a control is never nameless.

[[nodiscard]] std::wstring RibbonLabel(std::wstring_view language, std::wstring_view controlId);
[[nodiscard]] std::wstring RibbonScreentip(std::wstring_view language, std::wstring_view controlId);

}  // namespace qv
