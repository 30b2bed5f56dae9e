#include "tools/image_shapes.h"

#include <algorithm>
#include <utility>

namespace qv {
namespace {

// MsoShapeType.
constexpr std::int32_t kAutoShape = 1;
constexpr std::int32_t kChartShape = 3;
constexpr std::int32_t kFreeform = 5;
constexpr std::int32_t kGroupShape = 6;
constexpr std::int32_t kLinkedPicture = 11;
constexpr std::int32_t kPictureShape = 13;
constexpr std::int32_t kPlaceholder = 14;
constexpr std::int32_t kTextBox = 17;
constexpr std::int32_t kGraphic = 28;
constexpr std::int32_t kLinkedGraphic = 29;
/// MsoFillType.
constexpr std::int32_t kPictureFillType = 6;

/// "HasChart" is a number in one host and a flag in the other; a host without it may still have the chart.
bool HoldsChart(IDispatch* shape) {
  Variant has;
  if (FAILED(GetProperty(shape, L"HasChart", has))) return GetDispProperty(shape, L"Chart") != nullptr;
  return has.IsTrue() || IntegerOf(has) != 0;
}

bool IsFilledWithPicture(IDispatch* shape) {
  return GetIntProperty(GetDispProperty(shape, L"Fill").Get(), L"Type") == kPictureFillType;
}

/// A collection of shapes and how many there are.
struct Shapes {
  ComPtr<IDispatch> collection;
  std::int32_t count = 0;
  HostAnswer answer;

  [[nodiscard]] static Shapes Of(IDispatch* owner, const wchar_t* property) {
    Shapes shapes;
    shapes.collection = GetDispProperty(owner, property, &shapes.answer);
    if (shapes.collection == nullptr) return shapes;
    Variant count;
    shapes.answer.hr = GetProperty(shapes.collection.Get(), L"Count", count, &shapes.answer.exceptionCode);
    if (shapes.answer.Ok()) shapes.count = IntegerOf(count);
    return shapes;
  }
  /// `index` is 1-based; null beyond the end.
  [[nodiscard]] ComPtr<IDispatch> At(std::int32_t index, HostAnswer* why = nullptr) const {
    if (index < 1 || index > count) return nullptr;
    return GetCollectionItem(collection.Get(), Variant(index), why);
  }
};

/// Looks at every shape of a sheet.
class Walk {
 public:
  explicit Walk(SheetPictures& found) : found_(found) {}

  /// `place` tells where the shapes are; the walk goes on behind the end of its path, or at the top.
  void Visit(const Shapes& shapes, const ImageAnchor& place, bool inGroup) {
    for (std::int32_t index = 1; index <= shapes.count && !found_.answer.IsBusy(); ++index) {
      ImageAnchor at = place;
      if (inGroup) {
        at.childPath.push_back(index);
      } else {
        at.shapeIndex = index;
      }
      HostAnswer answer;
      VisitShape(shapes.At(index, &answer), at);
      if (answer.IsBusy()) found_.answer = answer;
    }
  }

 private:
  void VisitShape(ComPtr<IDispatch> shape, const ImageAnchor& at) {
    const ShapeKind kind = KindOfShape(shape.Get());
    if (kind == ShapeKind::kGroup && at.childPath.size() < kMaxChildPath) {
      Visit(Shapes::Of(shape.Get(), L"GroupItems"), at, true);
    } else if (IsPictureKind(kind)) {
      const ImageAnchor anchor = AnchorOfShape(shape.Get(), at);
      found_.pictures.push_back({std::move(shape), kind, anchor});
    } else {
      ++found_.unsupported;
    }
  }

  SheetPictures& found_;
};

/// Looks for the picture that an anchor means.
class Search {
 public:
  Search(const Shapes& shapes, const ImageAnchor& wanted, ResolvedAnchor& result)
      : shapes_(shapes), wanted_(wanted), result_(result) {}

  void Run() {
    NoteNamed();
    if (LookAt(wanted_.shapeIndex)) return;
    for (std::int32_t index = 1; index <= shapes_.count; ++index) {
      if (index != wanted_.shapeIndex && LookAt(index)) return;
    }
  }

 private:
  /// The shape of that name is the first candidate, but its number is still to be found.
  void NoteNamed() {
    if (!wanted_.childPath.empty()) return;
    HostAnswer answer;
    const ComPtr<IDispatch> named = GetCollectionItem(shapes_.collection.Get(), wanted_.shapeName, &answer);
    if (answer.IsBusy()) result_.answer = answer;
    if (named != nullptr) result_.candidate = AnchorOfShape(named.Get(), wanted_);
  }

  [[nodiscard]] bool LookAt(std::int32_t index) {
    HostAnswer answer;
    ComPtr<IDispatch> shape = shapes_.At(index, &answer);
    if (answer.IsBusy()) result_.answer = answer;
    for (const std::int32_t child : wanted_.childPath)
      shape = Shapes::Of(shape.Get(), L"GroupItems").At(child);
    if (shape == nullptr) return false;
    ImageAnchor place = wanted_;
    place.shapeIndex = index;
    const ImageAnchor anchor = AnchorOfShape(shape.Get(), place);
    if (result_.candidate.sheetName.empty()) result_.candidate = anchor;
    const ShapeKind kind = IsSamePicture(anchor, wanted_) ? KindOfShape(shape.Get()) : ShapeKind::kOther;
    if (!IsPictureKind(kind)) return false;
    result_.picture = SheetPicture{std::move(shape), kind, anchor};
    return true;
  }

  const Shapes& shapes_;
  const ImageAnchor& wanted_;
  ResolvedAnchor& result_;
};

}  // namespace

ShapeKind KindOfShape(IDispatch* shape) {
  switch (GetIntProperty(shape, L"Type")) {
    case kPictureShape:
    case kLinkedPicture:
    case kGraphic:
    case kLinkedGraphic:
      return ShapeKind::kPicture;
    case kGroupShape:
      return ShapeKind::kGroup;
    case kChartShape:
      return HoldsChart(shape) ? ShapeKind::kChart : ShapeKind::kOther;
    case kAutoShape:
    case kFreeform:
    case kPlaceholder:
    case kTextBox:
      return IsFilledWithPicture(shape) ? ShapeKind::kPictureFill : ShapeKind::kOther;
    default:
      return ShapeKind::kOther;
  }
}

bool IsPictureKind(ShapeKind kind) {
  return kind == ShapeKind::kPicture || kind == ShapeKind::kPictureFill || kind == ShapeKind::kChart;
}

SheetPictures FindPictures(IDispatch* sheet, const std::wstring& sheetName) {
  SheetPictures found;
  const Shapes shapes = Shapes::Of(sheet, L"Shapes");
  found.answer = shapes.answer;
  found.hasCollection = shapes.collection != nullptr;
  ImageAnchor place;
  place.sheetName = sheetName;
  Walk(found).Visit(shapes, place, false);
  return found;
}

ImageAnchor AnchorOfShape(IDispatch* shape, const ImageAnchor& place) {
  ImageAnchor anchor = place;
  anchor.shapeName = GetStringProperty(shape, L"Name");
  anchor.width = GetNumberProperty(shape, L"Width").value_or(0);
  anchor.height = GetNumberProperty(shape, L"Height").value_or(0);
  anchor.left = GetNumberProperty(shape, L"Left").value_or(0);
  anchor.top = GetNumberProperty(shape, L"Top").value_or(0);
  return anchor;
}

ResolvedAnchor ResolveAnchor(IDispatch* sheet, const ImageAnchor& anchor) {
  ResolvedAnchor result;
  const Shapes shapes = Shapes::Of(sheet, L"Shapes");
  result.answer = shapes.answer;
  if (!shapes.answer.IsBusy()) Search(shapes, anchor, result).Run();
  return result;
}

}  // namespace qv
