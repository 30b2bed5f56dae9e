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

/// A property's value, empty when it cannot be read. `answer` keeps a busy host's.
Variant Read(IDispatch* object, std::wstring_view name, HostAnswer& answer) {
  Variant value;
  HostAnswer own;
  own.hr = GetProperty(object, name, value, &own.exceptionCode);
  if (own.IsBusy()) answer = own;
  return own.Ok() ? std::move(value) : Variant();
}

std::optional<double> NumberOf(const Variant& value) {
  switch (value.Type()) {
    case VT_R8:
      return value->dblVal;
    case VT_R4:
      return value->fltVal;
    case VT_I2:
    case VT_I4:
      return IntegerOf(value);
    default:
      return std::nullopt;
  }
}

/// "HasChart" is a number in one host and a flag in the other; a host without it may still have the chart.
bool HoldsChart(IDispatch* shape, HostAnswer& answer) {
  const Variant has = Read(shape, L"HasChart", answer);
  if (has.Type() == VT_EMPTY) return Read(shape, L"Chart", answer).Object() != nullptr;
  return has.IsTrue() || IntegerOf(has) != 0;
}

bool IsFilledWithPicture(IDispatch* shape, HostAnswer& answer) {
  const ComPtr<IDispatch> fill = Read(shape, L"Fill", answer).Object();
  return IntegerOf(Read(fill.Get(), L"Type", answer)) == kPictureFillType;
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
      ComPtr<IDispatch> shape = shapes.At(index, &answer);
      if (answer.IsBusy()) {
        found_.answer = answer;
      } else {
        VisitShape(std::move(shape), at);
      }
    }
  }

 private:
  void VisitShape(ComPtr<IDispatch> shape, const ImageAnchor& at) {
    HostAnswer answer;
    const ShapeKind kind = KindOfShape(shape.Get(), answer);
    std::optional<ImageAnchor> anchor;
    if (kind == ShapeKind::kGroup && at.childPath.size() < kMaxChildPath) return VisitGroup(shape.Get(), at);
    if (IsPictureKind(kind)) anchor = ReadAnchor(shape.Get(), at, answer);
    if (answer.IsBusy()) {
      found_.answer = answer;
    } else if (anchor) {
      found_.pictures.push_back({std::move(shape), kind, *std::move(anchor)});
    } else {
      ++found_.unsupported;
    }
  }

  void VisitGroup(IDispatch* group, const ImageAnchor& at) {
    const Shapes children = Shapes::Of(group, L"GroupItems");
    if (children.answer.IsBusy()) found_.answer = children.answer;
    Visit(children, at, true);
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
    if (named != nullptr) Offer(ReadAnchor(named.Get(), wanted_, result_.answer));
  }

  void Offer(const std::optional<ImageAnchor>& anchor) {
    if (anchor && result_.candidate.sheetName.empty()) result_.candidate = *anchor;
  }

  [[nodiscard]] bool LookAt(std::int32_t index) {
    ComPtr<IDispatch> shape = ShapeAt(index);
    if (shape == nullptr) return false;
    ImageAnchor place = wanted_;
    place.shapeIndex = index;
    const std::optional<ImageAnchor> anchor = ReadAnchor(shape.Get(), place, result_.answer);
    Offer(anchor);
    if (!anchor || !IsSamePicture(*anchor, wanted_)) return false;
    const ShapeKind kind = KindOfShape(shape.Get(), result_.answer);
    if (!IsPictureKind(kind)) return false;
    result_.picture = SheetPicture{std::move(shape), kind, *anchor};
    return true;
  }

  /// What lies at the end of the wanted path from the top-level shape of that number; null when nothing does.
  [[nodiscard]] ComPtr<IDispatch> ShapeAt(std::int32_t index) {
    HostAnswer answer;
    ComPtr<IDispatch> shape = shapes_.At(index, &answer);
    for (const std::int32_t child : wanted_.childPath) {
      if (shape == nullptr) break;
      const Shapes children = Shapes::Of(shape.Get(), L"GroupItems");
      answer = children.answer;
      shape = answer.IsBusy() ? nullptr : children.At(child, &answer);
    }
    if (answer.IsBusy()) result_.answer = answer;
    return shape;
  }

  const Shapes& shapes_;
  const ImageAnchor& wanted_;
  ResolvedAnchor& result_;
};

}  // namespace

ShapeKind KindOfShape(IDispatch* shape, HostAnswer& answer) {
  switch (IntegerOf(Read(shape, L"Type", answer))) {
    case kPictureShape:
    case kLinkedPicture:
    case kGraphic:
    case kLinkedGraphic:
      return ShapeKind::kPicture;
    case kGroupShape:
      return ShapeKind::kGroup;
    case kChartShape:
      return HoldsChart(shape, answer) ? ShapeKind::kChart : ShapeKind::kOther;
    case kAutoShape:
    case kFreeform:
    case kPlaceholder:
    case kTextBox:
      return IsFilledWithPicture(shape, answer) ? ShapeKind::kPictureFill : ShapeKind::kOther;
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

std::optional<ImageAnchor> ReadAnchor(IDispatch* shape, const ImageAnchor& place, HostAnswer& answer) {
  constexpr struct {
    std::wstring_view property;
    double ImageAnchor::*field;
  } kNumbers[] = {{L"Width", &ImageAnchor::width},
                  {L"Height", &ImageAnchor::height},
                  {L"Left", &ImageAnchor::left},
                  {L"Top", &ImageAnchor::top}};
  ImageAnchor anchor = place;
  anchor.shapeName = Read(shape, L"Name", answer).Text();
  for (const auto& [property, field] : kNumbers) {
    const std::optional<double> number = NumberOf(Read(shape, property, answer));
    if (!number) return std::nullopt;
    anchor.*field = *number;
  }
  return anchor;
}

ImageAnchor AnchorOfShape(IDispatch* shape, const ImageAnchor& place) {
  HostAnswer answer;
  return ReadAnchor(shape, place, answer).value_or(place);
}

ResolvedAnchor ResolveAnchor(IDispatch* sheet, const ImageAnchor& anchor) {
  ResolvedAnchor result;
  const Shapes shapes = Shapes::Of(sheet, L"Shapes");
  result.answer = shapes.answer;
  if (!shapes.answer.IsBusy()) Search(shapes, anchor, result).Run();
  return result;
}

}  // namespace qv
