#pragma once

#include <windows.h>

#include <string_view>

namespace qv::devhost {

// The messages are those that Windows would send. They are sent, not posted: a posted key would go through
// TranslateMessage, which makes a second character of it, behind those that follow.

/// A click of the left button at a point of the window's client area.
void ClickIn(HWND window, POINT point);

/// Types text into the window, which gets the focus: characters, with "\n" as the Enter key and "\t" as the
/// Tab key.
void TypeInto(HWND window, std::wstring_view text);

}  // namespace qv::devhost
