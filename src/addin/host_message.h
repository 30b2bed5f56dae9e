#pragma once

#include <windows.h>

#include <string_view>

namespace qv {

/// A message box under the add-in's own title; `type` are MB_… flags. The button's id, 0 when the box could
/// not be shown. Runs messages until it is answered, so never inside a browser event. Host UI thread.
int ShowMessage(HWND owner, std::wstring_view text, UINT type);

/// The same with a warning sign and OK, over the host's window.
void ShowHostWarning(std::wstring_view text);

}  // namespace qv
