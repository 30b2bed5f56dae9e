#pragma once

#include <oaidl.h>

#include <string_view>

#include "foundation/unique_gdi.h"
#include "tools/clipboard_backup.h"

namespace qv {

/// What an object of the host looks like on the screen, or why that cannot be told.
struct CopiedPicture {
  UniqueBitmap bitmap;
  /// Empty when there is a bitmap.
  std::wstring_view error;
};

/// Has the host copy a range or a shape as a picture and takes it from the clipboard, which `backup` puts
/// back. A clipboard that could not be put back is not overwritten. Host UI thread.
[[nodiscard]] CopiedPicture CopyPictureOf(IDispatch* application, IDispatch* object,
                                          const ClipboardBackup& backup);
/// The same for one picture, after which the clipboard is put back at once.
[[nodiscard]] CopiedPicture CopyPictureOf(IDispatch* application, IDispatch* object);

}  // namespace qv
