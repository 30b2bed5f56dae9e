#pragma once

namespace qv {

/// Whether the platform's character types class a UTF-16 unit as alphabetic. Any thread.
[[nodiscard]] bool IsPlatformLetter(wchar_t unit);

}  // namespace qv
