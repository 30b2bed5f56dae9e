#include "tools/chart_tool.h"

#include <array>

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "tools/chart_args.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"
#include "workbook/chart_collection.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

constexpr std::wstring_view kNoChartText = L"chart object not accessible";

/// A new chart: its frame on the sheet, or why there is none.
struct NewChart {
  ComPtr<IDispatch> frame;
  std::wstring_view error;
};

bool IsMissingMember(HRESULT hr) {
  return hr == DISP_E_UNKNOWNNAME || hr == DISP_E_MEMBERNOTFOUND;
}

NewChart AddToChartObjects(IDispatch* sheet, const ChartPlace& place) {
  const ComPtr<IDispatch> charts = ChartObjectsOf(sheet);
  if (charts == nullptr) return {nullptr, L"neither Shapes.AddChart2 nor ChartObjects available"};
  const std::array call{Variant(place.left), Variant(place.top), Variant(place.width), Variant(place.height)};
  Variant frame;
  const bool added = SUCCEEDED(InvokeByName(charts.Get(), L"Add", call, &frame)) && frame.Object() != nullptr;
  if (!added) return {nullptr, L"ChartObjects.Add failed"};
  return {frame.Object(), {}};
}

NewChart AddFrame(IDispatch* sheet, std::int32_t kind, const ChartPlace& place) {
  const ComPtr<IDispatch> shapes = GetDispProperty(sheet, L"Shapes");
  if (shapes == nullptr) return {nullptr, L"Shapes collection unavailable"};
  // The style of the type (-1), and the layout that newer charts have.
  const std::array call{Variant(-1),          Variant(kind),         Variant(place.left), Variant(place.top),
                        Variant(place.width), Variant(place.height), Variant(true)};
  Variant shape;
  const HRESULT hr = InvokeByName(shapes.Get(), L"AddChart2", call, &shape);
  if (IsMissingMember(hr)) return AddToChartObjects(sheet, place);
  if (FAILED(hr) || shape.Object() == nullptr) return {nullptr, kNoChartText};
  return {shape.Object(), {}};
}

/// What the chart shows. False when the host refuses it.
bool Fill(IDispatch* chart, IDispatch* source, std::int32_t kind) {
  const Variant data(source);
  const Variant type(kind);
  return SUCCEEDED(InvokeByName(chart, L"SetSourceData", {&data, 1}, nullptr)) &&
         SUCCEEDED(PutDispProperty(chart, L"ChartType", &type));
}

/// A chart without its title is still a chart.
void SetTitle(IDispatch* chart, const std::wstring& title) {
  if (title.empty()) return;
  const Variant shown(true);
  const Variant text(title);
  static_cast<void>(PutDispProperty(chart, L"HasTitle", &shown));
  static_cast<void>(PutDispProperty(GetDispProperty(chart, L"ChartTitle").Get(), L"Text", &text));
}

}  // namespace

std::wstring ChartCreate(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  const std::optional<ChartKind> kind = ParseChartKind(arguments);
  if (!kind) return ErrorResult(L"unknown chart type (column|line|pie|bar)");
  const std::wstring address = arguments.Text(L"source");
  if (address.empty()) return ErrorResult(L"source range required");
  const std::optional<RangeArgs> range = ParseA1(address);
  if (!range) return ErrorResult(L"invalid source range");
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  const ComPtr<IDispatch> source = FindRange(sheet.sheet.Get(), *range);
  if (source == nullptr) return ErrorResult(L"invalid source range");

  const DisplayAlertsGuard alertsOff(context.target.Application());
  const NewChart added = AddFrame(sheet.sheet.Get(), kind->number, ParseChartPlace(arguments));
  if (added.frame == nullptr) return ErrorResult(added.error);
  const ComPtr<IDispatch> chart = GetDispProperty(added.frame.Get(), L"Chart");
  if (chart == nullptr || !Fill(chart.Get(), source.Get(), kind->number)) {
    static_cast<void>(InvokeByName(added.frame.Get(), L"Delete", {}, nullptr));
    return ErrorResult(kNoChartText);
  }
  SetTitle(chart.Get(), arguments.Text(L"title"));
  return Concat(L"{\"ok\":true,\"shapeName\":", JsonQuote(GetStringProperty(added.frame.Get(), L"Name")),
                L",\"type\":\"", kind->word, L"\"}");
}

}  // namespace qv
