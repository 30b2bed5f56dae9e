#pragma once

#include "host/drawing.h"

namespace qv::devhost {

struct MemoryDcTraits {
  using Type = HDC;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DeleteDC(handle); }
};
using UniqueMemoryDc = UniqueHandle<MemoryDcTraits>;

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
