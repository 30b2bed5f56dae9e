#pragma once

#include <string>

namespace qv::devhost {

/// The clipboard's picture as the bytes of an image file: a bitmap as .bmp, else an enhanced metafile as
/// .emf. Empty when there is none, or the clipboard cannot be had.
[[nodiscard]] std::string ImageFileFromClipboard();

}  // namespace qv::devhost
