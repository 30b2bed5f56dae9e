#pragma once

#include <ocidl.h>
#include <windows.h>

#include <string>

namespace qv::devhost {

/// GDI+ for as long as anything draws with it. Throws std::runtime_error when it does not start.
class PictureLibrary {
 public:
  PictureLibrary();
  PictureLibrary(const PictureLibrary&) = delete;
  PictureLibrary& operator=(const PictureLibrary&) = delete;
  ~PictureLibrary();

 private:
  ULONG_PTR token_ = 0;
};

/// The bitmap of a picture object, borrowed from it; null when it holds none.
[[nodiscard]] HBITMAP BitmapOf(IPicture* picture);

/// Draws a bitmap into the area, smoothly when the sizes differ. One of 32 bits a pixel is taken to be
/// premultiplied by its alpha, as ribbon pictures are.
void DrawBitmap(HDC canvas, HBITMAP bitmap, const RECT& area);

/// Writes a bitmap without transparency. Throws std::runtime_error when the file cannot be written.
void SavePng(HBITMAP bitmap, const std::wstring& path);

}  // namespace qv::devhost
