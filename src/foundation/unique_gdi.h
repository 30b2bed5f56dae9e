#pragma once

#include "foundation/unique_handle.h"

namespace qv {

/// Fonts, brushes, pens and bitmaps: null means none. Must not be selected into a device context any more.
template <typename Handle>
struct GdiTraits {
  using Type = Handle;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DeleteObject(handle); }
};

using UniqueFont = UniqueHandle<GdiTraits<HFONT>>;
using UniqueBrush = UniqueHandle<GdiTraits<HBRUSH>>;
using UniquePen = UniqueHandle<GdiTraits<HPEN>>;
using UniqueBitmap = UniqueHandle<GdiTraits<HBITMAP>>;

}  // namespace qv
