#pragma once

#include <olectl.h>
#include <windows.h>
// GDI+ wants the headers above first.
#include <gdiplus.h>

namespace qv {

/// GDI+ is there while this lives, if it could be started.
class GdiplusSession {
 public:
  GdiplusSession() {
    const Gdiplus::GdiplusStartupInput input;
    started_ = Gdiplus::GdiplusStartup(&token_, &input, nullptr) == Gdiplus::Ok;
  }
  GdiplusSession(const GdiplusSession&) = delete;
  GdiplusSession& operator=(const GdiplusSession&) = delete;
  ~GdiplusSession() {
    if (started_) Gdiplus::GdiplusShutdown(token_);
  }

  [[nodiscard]] bool Started() const { return started_; }

 private:
  ULONG_PTR token_ = 0;
  bool started_ = false;
};

}  // namespace qv
