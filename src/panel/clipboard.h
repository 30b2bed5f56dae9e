#pragma once

#include <windows.h>

#include <string_view>

namespace qv {

/// Replaces the clipboard's content by a text on behalf of `owner`, a window of this thread. Best effort:
/// another program may hold the clipboard.
void CopyTextToClipboard(HWND owner, std::wstring_view text);

}  // namespace qv
