#pragma once

#include <oaidl.h>

#include <cstddef>
#include <span>
#include <string_view>

#include "tools/image_shapes.h"

namespace qv {

/// How the replacement of a picture ended.
struct ImageReplacement {
  bool done = false;
  /// What more there is to say of a failure; mostly empty.
  std::wstring_view detail;
  /// Of the picture that is in the place now.
  ImageAnchor anchor;
};

/// Shows another picture in the place of one: in the shape itself where the host can do that, else in a new
/// shape that takes the old one's place, size, name, turn, macro and position in the stack. The new shape is
/// there before the old one is deleted, so a failure, an exception too, leaves the sheet as it was. A picture
/// inside a group is not exchanged for another shape, because it would leave the group. `png` is a PNG file;
/// its temporary copy is deleted. Host UI thread.
[[nodiscard]] ImageReplacement ReplacePicture(IDispatch* application, IDispatch* sheet,
                                              const SheetPicture& picture, std::span<const std::byte> png);

}  // namespace qv
