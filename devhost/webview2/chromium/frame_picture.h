#pragma once

#include <windows.h>

#include <string>

#include "foundation/unique_handle.h"
#include "panel/webview2_interfaces.h"

namespace qv::devhost {

template <typename Handle>
struct GdiTraits {
  using Type = Handle;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DeleteObject(handle); }
};
using UniqueBitmap = UniqueHandle<GdiTraits<HBITMAP>>;

/// What a page looks like, in pixels of its window.
struct FramePicture {
  UniqueBitmap bitmap{};
  SIZE size{};
};

/// The picture in base64 text of a PNG file; without a bitmap when it is none. GDI+ must be up.
[[nodiscard]] FramePicture DecodeFrame(const std::string& base64);

/// Shows pictures of a page in its window: never stretched, what they do not cover in the background colour.
class FramePainter {
 public:
  void SetBackground(COREWEBVIEW2_COLOR color) { background_ = RGB(color.R, color.G, color.B); }
  void Show(FramePicture picture) { picture_ = std::move(picture); }
  /// Of the picture shown; nothing before the first.
  [[nodiscard]] SIZE Size() const { return picture_.size; }
  /// Handles WM_PAINT.
  void Paint(HWND window) const;

 private:
  void Fill(HDC target, const RECT& area) const;

  FramePicture picture_;
  COLORREF background_ = RGB(255, 255, 255);
};

}  // namespace qv::devhost
