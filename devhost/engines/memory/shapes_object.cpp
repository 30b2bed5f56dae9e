#include "engines/memory/shapes_object.h"

#include "engines/memory/chart_objects.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {
namespace {

/// MsoShapeType of a chart, and MsoTriState true.
constexpr long kChartShape = 3;
constexpr long kTriStateTrue = -1;
constexpr long kColumnClustered = 51;

}  // namespace

const ClassInfo& ShapesObject::Class() const {
  using S = ShapesObject;
  static const ClassInfo info("Shapes",
                              {
                                  {L"Count", kGet, Do<&S::Count>},
                                  {L"Item", kMethod, Do<&S::Item>},
                                  {L"AddChart2", kMethod, Do<&S::AddChart2>},
                                  {L"Application", kGet, Do<&S::Application>},
                              },
                              L"Item", true);
  return info;
}

void ShapesObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

Variant ShapesObject::Item(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  return Make<ShapeObject>(SharedHost(), sheet_, FindChart(*sheet_, *index));
}

Variant ShapesObject::AddChart2(Call& call) {
  Host::RequireFormattable(*sheet_);
  // Style, type, left, top, width, height; where nothing is given the host chooses.
  const auto chart = AddChart(*sheet_, call.Long(1, kColumnClustered), call.Double(2, 150),
                              call.Double(3, 100), call.Double(4, 360), call.Double(5, 216));
  return Make<ShapeObject>(SharedHost(), sheet_, chart);
}

const ClassInfo& ShapeObject::Class() const {
  using S = ShapeObject;
  static const ClassInfo info("Shape", {
                                           {L"Name", kGet | kPut, Do<&S::Name>},
                                           {L"Type", kGet, Do<&S::Type>},
                                           {L"HasChart", kGet, Do<&S::HasChart>},
                                           {L"Chart", kGet, Do<&S::ChartOf>},
                                           {L"Left", kGet | kPut, Do<&S::Position<&Chart::left>>},
                                           {L"Top", kGet | kPut, Do<&S::Position<&Chart::top>>},
                                           {L"Width", kGet | kPut, Do<&S::Position<&Chart::width>>},
                                           {L"Height", kGet | kPut, Do<&S::Position<&Chart::height>>},
                                           {L"Delete", kMethod, Do<&S::Delete>},
                                           {L"Parent", kGet, Do<&S::Parent>},
                                           {L"Application", kGet, Do<&S::Application>},
                                       });
  return info;
}

void ShapeObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
  if (chart_->deleted) throw HostError{RPC_E_DISCONNECTED};
}

Variant ShapeObject::Name(Call& call) {
  if (!call.IsPut()) return Variant(chart_->name);
  chart_->name = ToText(call.Value());
  return {};
}

Variant ShapeObject::Type(Call&) {
  return Variant(kChartShape);
}
Variant ShapeObject::HasChart(Call&) {
  return Variant(kTriStateTrue);
}
Variant ShapeObject::ChartOf(Call&) {
  return Make<ChartObject>(SharedHost(), sheet_, chart_);
}

Variant ShapeObject::AccessPosition(double Chart::*field, Call& call) {
  return ChartObjectObject::AccessPosition(*chart_, field, call);
}

Variant ShapeObject::Delete(Call&) {
  Host::RequireFormattable(*sheet_);
  chart_->deleted = true;
  std::erase(sheet_->charts, chart_);
  return {};
}

Variant ShapeObject::Parent(Call&) {
  return Make<WorksheetObject>(SharedHost(), sheet_);
}

}  // namespace qv::devhost::memory
