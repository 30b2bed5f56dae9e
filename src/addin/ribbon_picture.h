#pragma once

#include <windows.h>

#include <ocidl.h>

#include <memory>

#include "foundation/variant.h"

namespace qv {

class GdiplusSession;

/// Makes the ribbon's pictures. GDI+, whose start is slow and which the ribbon needs for every button in
/// turn, runs from the first picture until `Release`. Host UI thread.
class RibbonPictures {
 public:
  RibbonPictures();
  RibbonPictures(const RibbonPictures&) = delete;
  RibbonPictures& operator=(const RibbonPictures&) = delete;
  ~RibbonPictures();

  /// The PNG of a resource (type RCDATA) as a 32-bit bitmap with premultiplied alpha, which the picture owns.
  /// `picture` stays null when the resource is missing or no picture.
  [[nodiscard]] HRESULT LoadPng(int resourceId, ComPtr<IPictureDisp>& picture);

  /// Pictures that were handed out stay.
  void Release();

 private:
  std::unique_ptr<GdiplusSession> session_;
};

}  // namespace qv
