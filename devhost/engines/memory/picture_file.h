#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "engines/memory/floating_object.h"
#include "foundation/unique_gdi.h"

namespace qv::devhost::memory {

/// The picture in a file of any format that Windows knows, or in the bytes of such a file; null when it is
/// none.
[[nodiscard]] std::shared_ptr<const PictureData> LoadPicture(const std::wstring& path);
[[nodiscard]] std::shared_ptr<const PictureData> DecodePicture(const std::string& bytes);

/// The bytes of a PNG file, empty when there are none to be had.
[[nodiscard]] std::string EncodePicture(const PictureData& picture);

/// The picture in that size, pixel by pixel the same where it already has it. Opacity is lost.
[[nodiscard]] UniqueBitmap BitmapOf(const PictureData& picture, int width, int height);
[[nodiscard]] std::shared_ptr<const PictureData> PictureOf(HBITMAP bitmap);

}  // namespace qv::devhost::memory
