#include "engines/memory/shapes_object.h"

#include <algorithm>

#include "engines/common/clipboard_picture.h"
#include "engines/memory/chart_objects.h"
#include "engines/memory/picture_file.h"
#include "engines/memory/shape_drawing.h"
#include "engines/memory/shape_formats.h"
#include "engines/memory/worksheet_object.h"
#include "foundation/text.h"

namespace qv::devhost::memory {
namespace {

// MsoShapeType, MsoTriState true, MsoZOrderCmd.
constexpr long kChartShape = 3;
constexpr long kGroupShape = 6;
constexpr long kPictureShape = 13;
constexpr long kTriStateTrue = -1;
constexpr long kBringToFront = 0;
constexpr long kSendToBack = 1;
constexpr long kBringForward = 2;
constexpr long kSendBackward = 3;
constexpr long kColumnClustered = 51;

/// The object that a 1-based number or a name means; refused when there is none.
std::shared_ptr<FloatingObject> FindObject(const FloatingObjects& objects, const VARIANT* index) {
  if (index == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  if (index->vt == VT_BSTR) {
    const std::wstring name = ToText(*index);
    for (const auto& object : objects) {
      if (EqualsIgnoreAsciiCase(object->name, name)) return object;
    }
    Refuse();
  }
  const long number = ToLong(*index);
  if (number < 1 || number > static_cast<long>(objects.size())) Refuse();
  return objects[static_cast<size_t>(number - 1)];
}

const wchar_t* BaseName(long type) {
  return type == kPictureShape ? L"Picture " : type == kGroupShape ? L"Group " : L"Shape ";
}

}  // namespace

std::shared_ptr<Shape> AddShape(Sheet& sheet, long type) {
  const auto shape = std::make_shared<Shape>();
  const FloatingObjects others = sheet.Floating();
  for (size_t number = others.size() + 1; shape->name.empty(); ++number) {
    std::wstring candidate = Concat(BaseName(type), number);
    const bool taken =
        std::ranges::any_of(others, [&](const auto& other) { return other->name == candidate; });
    if (!taken) shape->name = std::move(candidate);
  }
  shape->type = type;
  shape->depth = sheet.TopDepth();
  sheet.shapes.push_back(shape);
  return shape;
}

void CopyDrawing(Host& host, Call& call, HBITMAP drawing) {
  constexpr long kScreen = 1;
  constexpr long kPrinter = 2;
  constexpr long kPicture = -4147;
  constexpr long kBitmap = 2;
  // The two hosts have different defaults.
  const long appearance = call.Long(0, host.isWps ? kPrinter : kScreen);
  const long format = call.Long(1, kPicture);
  const bool known =
      (appearance == kScreen || appearance == kPrinter) && (format == kPicture || format == kBitmap);
  if (!known || drawing == nullptr || !PutPictureOnClipboard(drawing, format == kBitmap)) Refuse();
}

const ClassInfo& ShapesObject::Class() const {
  using S = ShapesObject;
  static const ClassInfo info("Shapes",
                              {
                                  {L"Count", kGet, Do<&S::Count>},
                                  {L"Item", kMethod, Do<&S::Item>},
                                  {L"AddChart2", kMethod, Do<&S::AddChart2>},
                                  {L"AddPicture", kMethod, Do<&S::AddPicture>},
                                  {L"Application", kGet, Do<&S::Application>},
                              },
                              L"Item", true);
  return info;
}

void ShapesObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

Variant ShapesObject::Item(Call& call) {
  return Make<ShapeObject>(SharedHost(), sheet_, FindObject(sheet_->Floating(), call.Arg(0)));
}

Variant ShapesObject::AddChart2(Call& call) {
  Host::RequireFormattable(*sheet_);
  // Style, type, left, top, width, height; where nothing is given the host chooses.
  const auto chart = AddChart(*sheet_, call.Long(1, kColumnClustered), call.Double(2, 150),
                              call.Double(3, 100), call.Double(4, 360), call.Double(5, 216));
  return Make<ShapeObject>(SharedHost(), sheet_, chart);
}

Variant ShapesObject::AddPicture(Call& call) {
  // File, link, copy, left, top, width, height: none may be left out.
  if (call.Count() < 7) throw HostError{DISP_E_BADPARAMCOUNT};
  Host::RequireFormattable(*sheet_);
  const bool links = call.Long(1, 0) != 0;
  const bool copies = call.Long(2, 0) != 0;
  const auto picture = LoadPicture(ToText(*call.Arg(0)));
  if (picture == nullptr || (!links && !copies)) Refuse();
  const auto shape = AddShape(*sheet_, kPictureShape);
  shape->picture = picture;
  shape->left = call.Double(3, 0);
  shape->top = call.Double(4, 0);
  // -1 stands for the picture's own size.
  const double width = call.Double(5, -1);
  const double height = call.Double(6, -1);
  shape->width = width < 0 ? picture->width * 0.75 : width;
  shape->height = height < 0 ? picture->height * 0.75 : height;
  shape->lockAspectRatio = true;
  return Make<ShapeObject>(SharedHost(), sheet_, shape);
}

const ClassInfo& ShapeListObject::Class() const {
  using S = ShapeListObject;
  static const auto makeInfo = [](const char* name) {
    return ClassInfo(name,
                     {
                         {L"Count", kGet, Do<&S::Count>},
                         {L"Item", kMethod, Do<&S::Item>},
                         {L"Application", kGet, Do<&S::Application>},
                     },
                     L"Item", true);
  };
  static const ClassInfo group = makeInfo("GroupShapes");
  static const ClassInfo selection = makeInfo("ShapeRange");
  return kind_ == Kind::kGroup ? group : selection;
}

void ShapeListObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

Variant ShapeListObject::Item(Call& call) {
  return Make<ShapeObject>(SharedHost(), sheet_, FindObject(objects_, call.Arg(0)));
}

const ClassInfo& DrawingObject::Class() const {
  using D = DrawingObject;
  static const ClassInfo info("DrawingObject", {
                                                   {L"Name", kGet, Do<&D::Name>},
                                                   {L"ShapeRange", kGet, Do<&D::ShapeRange>},
                                                   {L"Application", kGet, Do<&D::Application>},
                                               });
  return info;
}

void DrawingObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
  if (objects_.front()->deleted) throw HostError{RPC_E_DISCONNECTED};
}

Variant DrawingObject::ShapeRange(Call&) {
  return Make<ShapeListObject>(SharedHost(), sheet_, objects_, ShapeListObject::Kind::kSelection);
}

const ClassInfo& ShapeObject::Class() const {
  using S = ShapeObject;
  static const ClassInfo info(
      "Shape", {
                   {L"Name", kGet | kPut, Do<&S::Name>},
                   {L"Type", kGet, Do<&S::Type>},
                   {L"HasChart", kGet, Do<&S::HasChart>},
                   {L"Chart", kGet, Do<&S::ChartOf>},
                   {L"Left", kGet | kPut, Do<&S::Position<&FloatingObject::left>>},
                   {L"Top", kGet | kPut, Do<&S::Position<&FloatingObject::top>>},
                   {L"Width", kGet | kPut, Do<&S::Position<&FloatingObject::width>>},
                   {L"Height", kGet | kPut, Do<&S::Position<&FloatingObject::height>>},
                   {L"Rotation", kGet | kPut, Do<&S::Position<&FloatingObject::rotation>>},
                   {L"AlternativeText", kGet | kPut, Do<&S::Text<&FloatingObject::alternativeText>>},
                   {L"Title", kGet | kPut, Do<&S::Text<&FloatingObject::title>>},
                   {L"OnAction", kGet | kPut, Do<&S::Text<&FloatingObject::onAction>>},
                   {L"Locked", kGet | kPut, Do<&S::Switch<&FloatingObject::locked>>},
                   {L"Visible", kGet | kPut, Do<&S::Switch<&FloatingObject::visible>>},
                   {L"Placement", kGet | kPut, Do<&S::Placement>},
                   {L"LockAspectRatio", kGet | kPut, Do<&S::Switch<&FloatingObject::lockAspectRatio>>},
                   {L"ZOrderPosition", kGet, Do<&S::ZOrderPosition>},
                   {L"ZOrder", kMethod, Do<&S::ZOrder>},
                   {L"GroupItems", kGet, Do<&S::GroupItems>},
                   {L"Fill", kGet, Do<&S::Fill>},
                   {L"PictureFormat", kGet, Do<&S::PictureFormat>},
                   {L"CopyPicture", kMethod, Do<&S::CopyPicture>},
                   {L"Copy", kMethod, Do<&S::Copy>},
                   {L"Delete", kMethod, Do<&S::Delete>},
                   {L"Parent", kGet, Do<&S::Parent>},
                   {L"Application", kGet, Do<&S::Application>},
               });
  return info;
}

void ShapeObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
  if (object_->deleted) throw HostError{RPC_E_DISCONNECTED};
}

Variant ShapeObject::Name(Call& call) {
  if (!call.IsPut()) return Variant(object_->name);
  Host::RequireFormattable(*sheet_);
  object_->name = ToText(call.Value());
  return {};
}

Variant ShapeObject::Type(Call&) {
  return Variant(shape_ != nullptr ? shape_->type : kChartShape);
}
Variant ShapeObject::HasChart(Call&) {
  return Variant(chart_ != nullptr ? kTriStateTrue : 0L);
}
Variant ShapeObject::ChartOf(Call&) {
  if (chart_ == nullptr) Refuse();
  return Make<ChartObject>(SharedHost(), sheet_, chart_);
}

Variant ShapeObject::AccessPosition(FloatingObject& object, double FloatingObject::*field, Call& call) {
  if (!call.IsPut()) return Variant(object.*field);
  object.*field = ToDouble(call.Value());
  return {};
}

Variant ShapeObject::AccessText(FloatingObject& object, std::wstring FloatingObject::*field, Call& call) {
  if (!call.IsPut()) return Variant(object.*field);
  object.*field = ToText(call.Value());
  return {};
}

Variant ShapeObject::AccessSwitch(FloatingObject& object, bool FloatingObject::*field, Call& call) {
  if (!call.IsPut()) return Variant(object.*field ? kTriStateTrue : 0L);
  object.*field = ToLong(call.Value()) != 0;
  return {};
}

Variant ShapeObject::Placement(Call& call) {
  if (!call.IsPut()) return Variant(object_->placement);
  const long wanted = ToLong(call.Value());
  if (wanted < 1 || wanted > 3) Refuse();
  object_->placement = wanted;
  return {};
}

Variant ShapeObject::ZOrderPosition(Call&) {
  const FloatingObjects all = sheet_->Floating();
  const auto found = std::ranges::find(all, object_);
  return Variant(static_cast<long>(found - all.begin()) + 1);
}

Variant ShapeObject::ZOrder(Call& call) {
  Host::RequireFormattable(*sheet_);
  FloatingObjects all = sheet_->Floating();
  const auto from = std::ranges::find(all, object_);
  if (from == all.end()) Refuse();
  const auto at = from - all.begin();
  const auto last = static_cast<std::ptrdiff_t>(all.size()) - 1;
  std::ptrdiff_t to = at;
  switch (call.Long(0, -1)) {
    case kBringToFront:
      to = last;
      break;
    case kSendToBack:
      to = 0;
      break;
    case kBringForward:
      to = std::min(at + 1, last);
      break;
    case kSendBackward:
      to = std::max<std::ptrdiff_t>(at - 1, 0);
      break;
    default:
      Refuse();
  }
  all.erase(from);
  all.insert(all.begin() + to, object_);
  for (size_t i = 0; i < all.size(); ++i)
    all[i]->depth = static_cast<long>(i) + 1;
  return {};
}

Variant ShapeObject::GroupItems(Call&) {
  if (shape_ == nullptr || shape_->type != kGroupShape) Refuse();
  return Make<ShapeListObject>(SharedHost(), sheet_,
                               FloatingObjects(shape_->children.begin(), shape_->children.end()),
                               ShapeListObject::Kind::kGroup);
}

Variant ShapeObject::Fill(Call&) {
  if (shape_ == nullptr) Refuse();
  return Make<FillFormatObject>(SharedHost(), sheet_, shape_);
}

Variant ShapeObject::PictureFormat(Call&) {
  if (shape_ == nullptr || shape_->type == kGroupShape) Refuse();
  return Make<PictureFormatObject>(SharedHost(), sheet_, shape_);
}

Variant ShapeObject::CopyPicture(Call& call) {
  CopyDrawing(GetHost(), call, DrawFloating(*object_).Get());
  return {};
}

Variant ShapeObject::Copy(Call&) {
  const UniqueBitmap drawing = DrawFloating(*object_);
  if (!drawing || !PutPictureOnClipboard(drawing.Get(), true)) Refuse();
  return {};
}

Variant ShapeObject::Delete(Call&) {
  Host::RequireFormattable(*sheet_);
  sheet_->Remove(*object_);
  return {};
}

Variant ShapeObject::Parent(Call&) {
  return Make<WorksheetObject>(SharedHost(), sheet_);
}

}  // namespace qv::devhost::memory
