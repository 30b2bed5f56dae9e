#pragma once

#include <windows.h>

#include "foundation/unique_handle.h"

namespace qv::devhost {

template <typename Object>
struct GdiTraits {
  using Type = Object;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DeleteObject(handle); }
};

struct MemoryDcTraits {
  using Type = HDC;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DeleteDC(handle); }
};

using UniqueFont = UniqueHandle<GdiTraits<HFONT>>;
using UniqueBitmap = UniqueHandle<GdiTraits<HBITMAP>>;
using UniqueBrush = UniqueHandle<GdiTraits<HBRUSH>>;
using UniqueRegion = UniqueHandle<GdiTraits<HRGN>>;
using UniqueMemoryDc = UniqueHandle<MemoryDcTraits>;

/// An object that is selected into a device context for a while.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(SelectObject(dc, object)) {}
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  ~Selected() { SelectObject(dc_, before_); }

 private:
  HDC dc_;
  HGDIOBJ before_;
};

/// Everything drawn meanwhile stays within the rectangle.
class Clipped {
 public:
  Clipped(HDC dc, const RECT& rect) : dc_(dc), saved_(SaveDC(dc)) {
    IntersectClipRect(dc, rect.left, rect.top, rect.right, rect.bottom);
  }
  Clipped(const Clipped&) = delete;
  Clipped& operator=(const Clipped&) = delete;
  ~Clipped() { RestoreDC(dc_, saved_); }

 private:
  HDC dc_;
  int saved_;
};

/// Fills without a pen or brush of one's own.
inline void FillColor(HDC dc, const RECT& rect, COLORREF color) {
  const COLORREF before = SetBkColor(dc, color);
  ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &rect, L"", 0, nullptr);
  SetBkColor(dc, before);
}

}  // namespace qv::devhost
