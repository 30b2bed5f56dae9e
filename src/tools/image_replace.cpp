#include "tools/image_replace.h"

#include <array>
#include <string>
#include <utility>

#include "foundation/file_replacement.h"
#include "foundation/guard.h"
#include "foundation/json_text.h"
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
/// A sheet with more shapes above the picture than there is time for keeps the new one in between.
constexpr ULONGLONG kMaxStackMs = 2000;

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
    PaneLog(Concat(L"ExcelImageTranslate replace could not resolve new shape old=",
                   JsonEscape(place.shapeName), L"\r\n"));
  }
  return shape;
}

/// A new shape, which is deleted again unless it is to stay.
class AddedShape {
 public:
  explicit AddedShape(ComPtr<IDispatch> shape) : shape_(std::move(shape)) {}
  AddedShape(const AddedShape&) = delete;
  AddedShape& operator=(const AddedShape&) = delete;
  ~AddedShape() {
    if (shape_ == nullptr || stays_) return;
    Guard(L"AddedShape", [this] {
      if (!DeleteShape(shape_.Get())) PaneLog(L"ExcelImageTranslate added shape not deleted\r\n");
    });
  }

  [[nodiscard]] IDispatch* Get() const { return shape_.Get(); }
  void Stay() { stays_ = true; }

 private:
  ComPtr<IDispatch> shape_;
  bool stays_ = false;
};

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
    SendBack(shape);
  }

 private:
  void SendBack(IDispatch* shape) const {
    if (position_ < 1) return;
    const Variant down(kSendBackward);
    const ULONGLONG begin = GetTickCount64();
    std::int32_t position = GetIntProperty(shape, kPosition);
    while (position > position_ && GetTickCount64() - begin < kMaxStackMs) {
      if (FAILED(InvokeByName(shape, L"ZOrder", {&down, 1}, nullptr))) return;
      const std::int32_t before = std::exchange(position, GetIntProperty(shape, kPosition));
      if (position >= before) return;
    }
  }

  /// In the order in which they are put; a shape that is hidden is so last, as hosts do less with it then.
  static constexpr std::array kProperties{L"Name",      L"AlternativeText", L"Title",
                                          L"Placement", L"LockAspectRatio", L"Rotation",
                                          L"OnAction",  L"Locked",          L"Visible"};
  /// 1 for the shape behind all others.
  static constexpr const wchar_t* kPosition = L"ZOrderPosition";

  std::array<Variant, kProperties.size()> values_;
  std::int32_t position_ = 0;
};

/// The number of a shape in the collection; the anchor's own where it is not found.
std::int32_t IndexOfShape(IDispatch* sheet, const ImageAnchor& anchor) {
  const ResolvedAnchor resolved = ResolveAnchor(sheet, anchor);
  return resolved.picture ? resolved.picture->anchor.shapeIndex : anchor.shapeIndex;
}

ImageReplacement ReplaceShape(IDispatch* sheet, const SheetPicture& picture, const std::wstring& path) {
  const ShapeLook look(picture.shape.Get());
  ImageReplacement replaced{true, {}, picture.anchor};
  AddedShape added(AddPicture(GetDispProperty(sheet, L"Shapes").Get(), picture.anchor, path));
  if (added.Get() == nullptr) return {};
  if (!DeleteShape(picture.shape.Get())) {
    PaneLog(Concat(L"ExcelImageTranslate old shape not deleted shape=", JsonEscape(picture.anchor.shapeName),
                   L"\r\n"));
    return {};
  }
  added.Stay();
  // There is no way back from here on: what fails now is done without.
  Guard(L"ReplaceShape", [&] { look.PutOn(added.Get()); });
  Guard(L"ReplaceShape", [&] {
    ImageAnchor anchor = AnchorOfShape(added.Get(), picture.anchor);
    anchor.shapeIndex = IndexOfShape(sheet, anchor);
    replaced.anchor = std::move(anchor);
  });
  return replaced;
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
  // Made ahead, as nothing may fail any more once the picture is there.
  ImageReplacement filled{true, {}, picture.anchor};
  if (ReplaceInPlace(picture, file.Path())) {
    Guard(L"ReplacePicture", [&] { filled.anchor = AnchorOfShape(picture.shape.Get(), picture.anchor); });
    return filled;
  }
  if (!picture.IsInGroup()) return ReplaceShape(sheet, picture, file.Path());
  PaneLog(Concat(L"ExcelImageTranslate in-place replace failed for grouped shape shape=",
                 JsonEscape(picture.anchor.shapeName), L"; refusing AddPicture fallback\r\n"));
  return {false, image_error::kGroupChildInPlaceOnly, {}};
}

}  // namespace qv
