#pragma once

#include <oaidl.h>

#include <string_view>

#include "tools/clipboard_backup.h"
#include "tools/image_encoding.h"
#include "tools/image_shapes.h"

namespace qv {

// What a picture on a sheet looks like. Host UI thread.

/// The two ways in which a picture is exported; a way that fails before there is a bitmap or file has its own
/// name as the failure's code.
inline constexpr std::wstring_view kByCopyPicture = L"copy_picture";
inline constexpr std::wstring_view kByShapeExport = L"shape_export";

/// The picture as the host copies it, by way of the clipboard, which is put back.
[[nodiscard]] EncodedImage ExportPicture(IDispatch* application, IDispatch* shape);

/// A picture's thumbnail, and the size of the whole picture.
struct ExportedThumbnail {
  PixelSize size;
  EncodedImage thumbnail;
};

/// The same, scaled down. `backup` puts the clipboard back, so that one serves for several pictures.
[[nodiscard]] ExportedThumbnail ExportThumbnail(IDispatch* application, IDispatch* shape,
                                                const ClipboardBackup& backup);

/// The picture as a file that the host writes: it has no such thing for shapes, so a temporary chart takes
/// the copied shape and is exported. Chart and file are deleted again, the clipboard is put back.
[[nodiscard]] EncodedImage ExportPictureThroughChart(IDispatch* application, IDispatch* sheet,
                                                     const SheetPicture& picture);

}  // namespace qv
