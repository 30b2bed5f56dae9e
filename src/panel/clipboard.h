#pragma once

#include <string_view>

namespace qv {

/// Replaces the clipboard's content by a text. Best effort: another program may hold the clipboard.
void CopyTextToClipboard(std::wstring_view text);

}  // namespace qv
