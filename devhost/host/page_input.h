#pragma once

#include <windows.h>

#include <string_view>

namespace qv::devhost {

/// A click of the left button at a point of the window's client area, by the messages that Windows would
/// send. They are posted.
void ClickIn(HWND window, POINT point);

/// Types text into the window, which gets the focus: characters, with "\n" as the Enter key and "\t" as the
/// Tab key. The messages are posted.
void TypeInto(HWND window, std::wstring_view text);

}  // namespace qv::devhost
