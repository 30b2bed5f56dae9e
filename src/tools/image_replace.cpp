#include "tools/image_replace.h"

#include <array>
#include <string>
#include <utility>

#include "foundation/file_replacement.h"
#include "foundation/logging.h"
#include "foundation/temporary_file.h"
#include "foundation/text.h"
#include "tools/image_results.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

// MsoTriState false and true, MsoZOrderCmd msoSendBackward.
constexpr int kNo = 0;
constexpr int kYes = -1;
constexpr int kSendBackward = 3;
/// A sheet with more shapes above the picture than that keeps the new one in between.
constexpr int kMaxStackSteps = 1000;

/// Fills the shape with the file. A picture's own "Fill" is painted behind it, so that nothing would be seen:
/// only a "PictureFormat" that takes an image can exchange it, which no host is known to have. A chart would
/// stay in front of its new background.
bool ReplaceInPlace(const SheetPicture& picture, const std::wstring& path) {
  if (picture.kind == ShapeKind::kChart) return false;
  const wchar_t* const holder = picture.kind == ShapeKind::kPictureFill ? L"Fill" : L"PictureFormat";
  const Variant file(path);
  return SUCCEEDED(
      InvokeByName(GetDispProperty(picture.shape.Get(), holder).Get(), L"UserPicture", {&file, 1}, nullptr));
}

bool DeleteShape(IDispatch* shape) {
  return SUCCEEDED(InvokeByName(shape, L"Delete", {}, nullptr));
}

/// The new shape; null when the host refuses it or does not tell which one it is.
ComPtr<IDispatch> AddPicture(IDispatch* shapes, const ImageAnchor& place, const std::wstring& path) {
  const std::int32_t before = GetIntProperty(shapes, L"Count");
  // A copy in the workbook, without a link to the file.
  const std::array call{Variant(path),      Variant(kNo),         Variant(kYes),        Variant(place.left),
                        Variant(place.top), Variant(place.width), Variant(place.height)};
  Variant added;
  const HRESULT hr = InvokeByName(shapes, L"AddPicture", call, &added);
  if (FAILED(hr)) {
    PaneLog(Concat(L"ExcelImageTranslate AddPicture failed hr=0x", Hex8(hr), L"\r\n"));
    return nullptr;
  }
  ComPtr<IDispatch> shape = added.Object();
  const std::int32_t count = GetIntProperty(shapes, L"Count");
  if (shape == nullptr && count > before) shape = GetCollectionItem(shapes, Variant(count));
  if (shape == nullptr) {
    PaneLog(
        Concat(L"ExcelImageTranslate replace could not resolve new shape old=", place.shapeName, L"\r\n"));
  }
  return shape;
}

/// What the new shape takes over from the old one, as far as both have it.
class ShapeLook {
 public:
  explicit ShapeLook(IDispatch* shape) {
    for (std::size_t i = 0; i < kProperties.size(); ++i)
      static_cast<void>(GetProperty(shape, kProperties[i], values_[i]));
    position_ = GetIntProperty(shape, kPosition);
  }

  void PutOn(IDispatch* shape) const {
    for (std::size_t i = 0; i < kProperties.size(); ++i) {
      if (values_[i].Type() != VT_EMPTY) {
        static_cast<void>(PutDispProperty(shape, kProperties[i], &values_[i]));
      }
    }
    const Variant down(kSendBackward);
    for (int step = 0; step < kMaxStackSteps && GetIntProperty(shape, kPosition) > position_; ++step) {
      if (position_ < 1 || FAILED(InvokeByName(shape, L"ZOrder", {&down, 1}, nullptr))) return;
    }
  }

 private:
  static constexpr std::array kProperties{L"Name", L"AlternativeText", L"Placement", L"LockAspectRatio"};
  /// 1 for the shape behind all others.
  static constexpr const wchar_t* kPosition = L"ZOrderPosition";

  std::array<Variant, kProperties.size()> values_;
  std::int32_t position_ = 0;
};

/// The number of a shape in the collection; `hint` where it is not found.
std::int32_t IndexOfShape(IDispatch* sheet, const ImageAnchor& anchor) {
  const ResolvedAnchor resolved = ResolveAnchor(sheet, anchor);
  return resolved.picture ? resolved.picture->anchor.shapeIndex : anchor.shapeIndex;
}

ImageReplacement ReplaceShape(IDispatch* sheet, const SheetPicture& picture, const std::wstring& path) {
  const ComPtr<IDispatch> added = AddPicture(GetDispProperty(sheet, L"Shapes").Get(), picture.anchor, path);
  if (added == nullptr) return {};
  const ShapeLook look(picture.shape.Get());
  if (!DeleteShape(picture.shape.Get())) {
    PaneLog(Concat(L"ExcelImageTranslate old shape not deleted shape=", picture.anchor.shapeName, L"\r\n"));
    static_cast<void>(DeleteShape(added.Get()));
    return {};
  }
  look.PutOn(added.Get());
  ImageAnchor anchor = AnchorOfShape(added.Get(), picture.anchor);
  anchor.shapeIndex = IndexOfShape(sheet, anchor);
  return {true, {}, std::move(anchor)};
}

bool WritePng(const std::wstring& path, std::span<const std::byte> png) {
  return !path.empty() && WriteFileAtomically(path, {reinterpret_cast<const char*>(png.data()), png.size()});
}

}  // namespace

ImageReplacement ReplacePicture(IDispatch* application, IDispatch* sheet, const SheetPicture& picture,
                                std::span<const std::byte> png) {
  const TemporaryFile file(L"qvimage", L".png");
  if (!WritePng(file.Path(), png)) return {};
  const DisplayAlertsGuard alertsOff(application);
  const ScreenUpdatingGuard stillScreen(application);
  if (ReplaceInPlace(picture, file.Path())) {
    return {true, {}, AnchorOfShape(picture.shape.Get(), picture.anchor)};
  }
  if (!picture.IsInGroup()) return ReplaceShape(sheet, picture, file.Path());
  PaneLog(Concat(L"ExcelImageTranslate in-place replace failed for grouped shape shape=",
                 picture.anchor.shapeName, L"; refusing AddPicture fallback\r\n"));
  return {false, image_error::kGroupChildInPlaceOnly, {}};
}

}  // namespace qv
