#pragma once

#include <windows.h>

namespace qv::devhost {

/// Replaces the clipboard's content by a picture: as a bitmap, else as an enhanced metafile that shows it.
/// False when the clipboard cannot be had. The bitmap stays the caller's.
[[nodiscard]] bool PutPictureOnClipboard(HBITMAP bitmap, bool asBitmap);

/// A copy of the bitmap on the clipboard, the caller's; null when there is none.
[[nodiscard]] HBITMAP TakePictureFromClipboard();

}  // namespace qv::devhost
