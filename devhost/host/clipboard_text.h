#pragma once

#include <optional>
#include <string>

namespace qv::devhost {

/// The text on the clipboard; nothing when there is none, or the clipboard cannot be had.
[[nodiscard]] std::optional<std::wstring> ClipboardText();

/// Puts a text in the place of what is on the clipboard. False when it cannot be had.
[[nodiscard]] bool PutClipboardText(const std::wstring& text);

}  // namespace qv::devhost
