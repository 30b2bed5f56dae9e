#include "host/screen_capture.h"

#include <stdexcept>

namespace qv::devhost {

namespace {

/// What waits to be drawn: also dialogs above the window belong to the picture.
BOOL CALLBACK DrawNow(HWND window, LPARAM) noexcept {
  return RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

}  // namespace

UniqueBitmap CaptureWindow(HWND window) {
  EnumThreadWindows(GetCurrentThreadId(), DrawNow, 0);
  GdiFlush();
  RECT area{};
  GetWindowRect(window, &area);
  const int width = area.right - area.left;
  const int height = area.bottom - area.top;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  UniqueBitmap bitmap(CreateCompatibleBitmap(screen, width, height));
  const HGDIOBJ former = SelectObject(memory, bitmap.Get());
  const BOOL copied = BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY | CAPTUREBLT);
  SelectObject(memory, former);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  if (!copied) throw std::runtime_error("the screen cannot be read");
  return bitmap;
}

}  // namespace qv::devhost
