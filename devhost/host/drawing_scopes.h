#pragma once

#include "host/drawing.h"

namespace qv::devhost {

struct MemoryDcTraits {
  using Type = HDC;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DeleteDC(handle); }
};
using UniqueMemoryDc = UniqueHandle<MemoryDcTraits>;

/// An object that is selected into a device context for a while.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ object) : dc_(dc), former_(SelectObject(dc, object)) {}
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  ~Selected() { SelectObject(dc_, former_); }

 private:
  HDC dc_;
  HGDIOBJ former_;
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

}  // namespace qv::devhost
