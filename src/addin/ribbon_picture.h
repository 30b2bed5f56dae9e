#pragma once

#include <windows.h>

#include <ocidl.h>

#include "foundation/variant.h"

namespace qv {

/// The PNG of a resource (type RCDATA) as a 32-bit bitmap with premultiplied alpha, which the picture owns.
/// `picture` stays null when the resource is missing or no picture.
[[nodiscard]] HRESULT LoadPngPicture(int resourceId, ComPtr<IPictureDisp>& picture);

}  // namespace qv
