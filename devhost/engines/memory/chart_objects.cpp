#include "engines/memory/chart_objects.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "engines/common/clipboard_picture.h"
#include "engines/memory/font_object.h"
#include "engines/memory/host_events.h"
#include "engines/memory/picture_file.h"
#include "engines/memory/range_object.h"
#include "engines/memory/shape_drawing.h"
#include "engines/memory/worksheet_object.h"
#include "foundation/text.h"

namespace qv::devhost::memory {
namespace {

constexpr long kColumnClustered = 51;
constexpr double kDefaultWidth = 360;
constexpr double kDefaultHeight = 216;

void RequireAliveChart(const Sheet& sheet, const Chart& chart) {
  RequireAliveSheet(sheet);
  if (chart.deleted) throw HostError{RPC_E_DISCONNECTED};
}

}  // namespace

std::shared_ptr<Chart> FindChart(const Sheet& sheet, const VARIANT& index) {
  if (index.vt == VT_BSTR) {
    const std::wstring name = ToText(index);
    for (const auto& chart : sheet.charts) {
      if (EqualsIgnoreAsciiCase(chart->name, name)) return chart;
    }
    Refuse();
  }
  const long number = ToLong(index);
  if (number < 1 || number > static_cast<long>(sheet.charts.size())) Refuse();
  return sheet.charts[static_cast<size_t>(number - 1)];
}

std::shared_ptr<Chart> AddChart(Sheet& sheet, long type, double left, double top, double width,
                                double height) {
  const auto chart = std::make_shared<Chart>();
  for (size_t number = sheet.charts.size() + 1; chart->name.empty(); ++number) {
    std::wstring candidate = Concat(L"Chart ", number);
    const bool taken = std::any_of(sheet.charts.begin(), sheet.charts.end(),
                                   [&](const auto& other) { return other->name == candidate; });
    if (!taken) chart->name = std::move(candidate);
  }
  chart->type = type;
  chart->left = left;
  chart->top = top;
  chart->width = width;
  chart->height = height;
  chart->depth = sheet.TopDepth();
  sheet.charts.push_back(chart);
  return chart;
}

const ClassInfo& ChartObjectsObject::Class() const {
  using C = ChartObjectsObject;
  static const ClassInfo info("ChartObjects",
                              {
                                  {L"Count", kGet, Do<&C::Count>},
                                  {L"Item", kMethod, Do<&C::Item>},
                                  {L"Add", kMethod, Do<&C::Add>},
                                  {L"Application", kGet, Do<&C::Application>},
                              },
                              L"Item", true);
  return info;
}

void ChartObjectsObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

Variant ChartObjectsObject::Item(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  return Make<ChartObjectObject>(SharedHost(), sheet_, FindChart(*sheet_, *index));
}

Variant ChartObjectsObject::Add(Call& call) {
  if (call.Count() < 4) throw HostError{DISP_E_BADPARAMCOUNT};
  Host::RequireFormattable(*sheet_);
  const auto chart = AddChart(*sheet_, kColumnClustered, call.Double(0, 0), call.Double(1, 0),
                              call.Double(2, kDefaultWidth), call.Double(3, kDefaultHeight));
  return Make<ChartObjectObject>(SharedHost(), sheet_, chart);
}

const ClassInfo& ChartObjectObject::Class() const {
  using C = ChartObjectObject;
  static const ClassInfo info("ChartObject",
                              {
                                  {L"Name", kGet | kPut, Do<&C::Name>},
                                  {L"Index", kGet, Do<&C::Index>},
                                  {L"Left", kGet | kPut, Do<&C::Position<&FloatingObject::left>>},
                                  {L"Top", kGet | kPut, Do<&C::Position<&FloatingObject::top>>},
                                  {L"Width", kGet | kPut, Do<&C::Position<&FloatingObject::width>>},
                                  {L"Height", kGet | kPut, Do<&C::Position<&FloatingObject::height>>},
                                  {L"Chart", kGet, Do<&C::ChartOf>},
                                  {L"Parent", kGet, Do<&C::Parent>},
                                  {L"Delete", kMethod, Do<&C::Delete>},
                                  {L"Select", kMethod, Do<&C::Select>},
                                  {L"Activate", kMethod, Do<&C::Select>},
                                  {L"ShapeRange", kGet, Do<&C::ShapeRange>},
                                  {L"Application", kGet, Do<&C::Application>},
                              });
  return info;
}

void ChartObjectObject::RequireAlive() const {
  RequireAliveChart(*sheet_, *chart_);
}

Variant ChartObjectObject::Name(Call& call) {
  if (!call.IsPut()) return Variant(chart_->name);
  chart_->name = ToText(call.Value());
  return {};
}

Variant ChartObjectObject::Index(Call&) {
  const auto found = std::find(sheet_->charts.begin(), sheet_->charts.end(), chart_);
  return Variant(static_cast<long>(found - sheet_->charts.begin()) + 1);
}

Variant ChartObjectObject::ChartOf(Call&) {
  return Make<ChartObject>(SharedHost(), sheet_, chart_);
}
Variant ChartObjectObject::Parent(Call&) {
  return Make<WorksheetObject>(SharedHost(), sheet_);
}

Variant ChartObjectObject::Delete(Call&) {
  Host::RequireFormattable(*sheet_);
  sheet_->Remove(*chart_);
  return Variant(true);
}

Variant ChartObjectObject::Select(Call&) {
  const auto window = FrontWindowOf(GetHost(), *sheet_);
  if (window == nullptr || window->activeSheet != sheet_) Refuse();
  window->ViewOf(*sheet_).selectedChart = chart_;
  return Variant(true);
}

Variant ChartObjectObject::ShapeRange(Call&) {
  return Make<ShapeListObject>(SharedHost(), sheet_, FloatingObjects{chart_},
                               ShapeListObject::Kind::kSelection);
}

const ClassInfo& ChartObject::Class() const {
  using C = ChartObject;
  static const ClassInfo info("Chart", {
                                           {L"Name", kGet, Do<&C::Name>},
                                           {L"HasTitle", kGet | kPut, Do<&C::HasTitle>},
                                           {L"ChartTitle", kGet, Do<&C::Title>},
                                           {L"ChartType", kGet | kPut, Do<&C::Type>},
                                           {L"SetSourceData", kMethod, Do<&C::SetSourceData>},
                                           {L"Paste", kMethod, Do<&C::Paste>},
                                           {L"Export", kMethod, Do<&C::Export>},
                                           {L"CopyPicture", kMethod, Do<&C::CopyPicture>},
                                           {L"Parent", kGet, Do<&C::Parent>},
                                           {L"Application", kGet, Do<&C::Application>},
                                       });
  return info;
}

void ChartObject::RequireAlive() const {
  RequireAliveChart(*sheet_, *chart_);
}

Variant ChartObject::HasTitle(Call& call) {
  if (!call.IsPut()) return Variant(chart_->hasTitle);
  const bool wanted = ToBool(call.Value());
  if (wanted && !chart_->hasTitle) chart_->title = L"Chart Title";
  if (!wanted) chart_->title.clear();
  chart_->hasTitle = wanted;
  return {};
}

Variant ChartObject::Title(Call&) {
  if (!chart_->hasTitle) Refuse();
  return Make<ChartTitleObject>(SharedHost(), sheet_, chart_);
}

Variant ChartObject::Type(Call& call) {
  if (!call.IsPut()) return Variant(chart_->type);
  chart_->type = ToLong(call.Value());
  return {};
}

Variant ChartObject::SetSourceData(Call& call) {
  const auto* range = dynamic_cast<RangeObject*>(NativeObject(call.Arg(0)));
  if (range == nullptr) throw HostError{DISP_E_TYPEMISMATCH};
  chart_->source = Concat(range->GetSheet()->name, L"!", FormatAddress(range->Areas(), true, true));
  return {};
}

Variant ChartObject::Paste(Call&) {
  Host::RequireFormattable(*sheet_);
  const UniqueBitmap bitmap(TakePictureFromClipboard());
  if (!bitmap) Refuse();
  chart_->pasted = PictureOf(bitmap.Get());
  return {};
}

Variant ChartObject::Export(Call& call) {
  if (call.Arg(0) == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  const VARIANT* const filter = call.Arg(1);
  if (filter != nullptr && !EqualsIgnoreAsciiCase(ToText(*filter), L"PNG")) Refuse();
  const UniqueBitmap drawing = DrawFloating(*chart_);
  const auto picture = drawing ? PictureOf(drawing.Get()) : nullptr;
  if (picture == nullptr) Refuse();
  std::ofstream file(std::filesystem::path(ToText(*call.Arg(0))), std::ios::binary);
  file << EncodePicture(*picture);
  file.close();
  if (!file) Refuse();
  return Variant(true);
}

Variant ChartObject::CopyPicture(Call& call) {
  CopyDrawing(GetHost(), call, DrawFloating(*chart_).Get());
  return {};
}

Variant ChartObject::Parent(Call&) {
  return Make<ChartObjectObject>(SharedHost(), sheet_, chart_);
}

const ClassInfo& ChartTitleObject::Class() const {
  using C = ChartTitleObject;
  static const ClassInfo info("ChartTitle", {
                                                {L"Text", kGet | kPut, Do<&C::Text>},
                                                {L"Caption", kGet | kPut, Do<&C::Text>},
                                                {L"Font", kGet, Do<&C::Font>},
                                                {L"Application", kGet, Do<&C::Application>},
                                            });
  return info;
}

void ChartTitleObject::RequireAlive() const {
  RequireAliveChart(*sheet_, *chart_);
  if (!chart_->hasTitle) throw HostError{RPC_E_DISCONNECTED};
}

Variant ChartTitleObject::Text(Call& call) {
  if (!call.IsPut()) return Variant(chart_->title);
  Host::RequireFormattable(*sheet_);
  chart_->title = ToText(call.Value());
  return {};
}

Variant ChartTitleObject::Font(Call&) {
  return Make<FontObject>(SharedHost(), std::make_unique<ChartTitleFont>(chart_));
}

}  // namespace qv::devhost::memory
