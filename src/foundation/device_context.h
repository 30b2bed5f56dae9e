#pragma once

#include <windows.h>

namespace qv {

/// A brush, pen or font in a device context while this lives.
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

/// A window's device context while this lives.
class WindowDc {
 public:
  explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
  WindowDc(const WindowDc&) = delete;
  WindowDc& operator=(const WindowDc&) = delete;
  ~WindowDc() { ReleaseDC(window_, dc_); }

  [[nodiscard]] HDC Get() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
};

}  // namespace qv
