#pragma once

#include "engines/memory/floating_object.h"
#include "foundation/unique_gdi.h"

namespace qv::devhost::memory {

/// What a chart or shape looks like at 96 dots an inch: a picture in the size in which it is shown, a group
/// with all that is in it, a frame for anything else. Null for one without extent or too large for a picture.
[[nodiscard]] UniqueBitmap DrawFloating(const FloatingObject& object);

/// Pixels of a length in points.
[[nodiscard]] int PixelsOf(double points);

}  // namespace qv::devhost::memory
