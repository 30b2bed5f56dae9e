#pragma once

#include <windows.h>

namespace qv::devhost {

/// Replaces the clipboard's content by a picture: as a bitmap, else as an enhanced metafile that shows it.
/// False when the clipboard cannot be had. The bitmap stays the caller's.
[[nodiscard]] bool PutPictureOnClipboard(HBITMAP bitmap, bool asBitmap);

}  // namespace qv::devhost
