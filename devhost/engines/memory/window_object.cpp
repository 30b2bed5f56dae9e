#include "engines/memory/window_object.h"

#include <algorithm>
#include <vector>

#include "engines/memory/chart_objects.h"
#include "engines/memory/host_events.h"
#include "engines/memory/range_object.h"
#include "engines/memory/shapes_object.h"
#include "engines/memory/workbook_object.h"
#include "engines/memory/worksheet_object.h"
#include "foundation/text.h"

namespace qv::devhost::memory {
namespace {

constexpr long kMaximized = -4137;

std::vector<std::shared_ptr<Window>> WindowsOf(const Host& host, const std::shared_ptr<Workbook>& workbook) {
  std::vector<std::shared_ptr<Window>> windows;
  for (const auto& window : host.windows) {
    if (workbook == nullptr || window->workbook.lock() == workbook) windows.push_back(window);
  }
  return windows;
}

}  // namespace

const ClassInfo& WindowObject::Class() const {
  using W = WindowObject;
  static const ClassInfo info(
      "Window", {
                    {L"Caption", kGet | kPut, Do<&W::Caption>},
                    {L"Hwnd", kGet, Do<&W::Hwnd>},
                    {L"Parent", kGet, Do<&W::Parent>},
                    {L"Workbook", kGet, Do<&W::Parent>},
                    {L"ActiveSheet", kGet, Do<&W::ActiveSheet>},
                    {L"ActiveCell", kGet, Do<&W::ActiveCell>},
                    {L"Selection", kGet, Do<&W::Selection>},
                    {L"RangeSelection", kGet, Do<&W::RangeSelection>},
                    {L"VisibleRange", kGet, Do<&W::VisibleRange>},
                    {L"Index", kGet, Do<&W::Index>},
                    {L"Activate", kMethod, Do<&W::Activate>},
                    {L"Close", kMethod, Do<&W::Close>},
                    {L"FreezePanes", kGet | kPut, Do<&W::FreezePanes>},
                    {L"SplitRow", kGet | kPut, Do<&W::ViewNumber<&SheetView::splitRow>>},
                    {L"SplitColumn", kGet | kPut, Do<&W::ViewNumber<&SheetView::splitColumn>>},
                    {L"ScrollRow", kGet | kPut, Do<&W::ViewNumber<&SheetView::scrollRow>>},
                    {L"ScrollColumn", kGet | kPut, Do<&W::ViewNumber<&SheetView::scrollColumn>>},
                    {L"Visible", kGet, Do<&W::Visible>},
                    {L"WindowState", kGet, Do<&W::WindowState>},
                    {L"Application", kGet, Do<&W::Application>},
                });
  return info;
}

bool WindowObject::Lacks(std::string_view member) const {
  return member == "Workbook" && !GetHost().windowHasWorkbook;
}

void WindowObject::RequireAlive() const {
  if (window_->closed) throw HostError{RPC_E_DISCONNECTED};
}

SheetView& WindowObject::View() const {
  if (window_->activeSheet == nullptr) Refuse();
  return window_->ViewOf(*window_->activeSheet);
}

Variant WindowObject::Caption(Call& call) {
  if (!call.IsPut()) return Variant(GetHost().CaptionOf(*window_));
  window_->ownCaption = ToText(call.Value());
  return {};
}

Variant WindowObject::Hwnd(Call&) {
  return Variant(window_->givenHwnd != 0 ? window_->givenHwnd : window_->hwnd);
}

Variant WindowObject::Parent(Call&) {
  return Make<WorkbookObject>(SharedHost(), window_->workbook.lock());
}

Variant WindowObject::ActiveSheet(Call&) {
  if (window_->activeSheet == nullptr) return Variant(static_cast<IDispatch*>(nullptr));
  return Make<WorksheetObject>(SharedHost(), window_->activeSheet);
}

Variant WindowObject::ActiveCell(Call&) {
  const Area first = View().activeCell.value_or(View().selection.front());
  return Make<RangeObject>(SharedHost(), window_->activeSheet, std::vector{CellArea(first.row1, first.col1)});
}

Variant WindowObject::Selection(Call& call) {
  const auto chart = View().selectedChart;
  const auto& shapes = View().selectedShapes;
  if (!shapes.empty() && !shapes.front()->deleted) {
    return Make<DrawingObject>(SharedHost(), window_->activeSheet, shapes);
  }
  if (chart == nullptr || chart->deleted) return RangeSelection(call);
  return Make<ChartObjectObject>(SharedHost(), window_->activeSheet, chart);
}

Variant WindowObject::RangeSelection(Call&) {
  return Make<RangeObject>(SharedHost(), window_->activeSheet, View().selection);
}

Variant WindowObject::VisibleRange(Call&) {
  const SheetView& view = View();
  const Area area{view.scrollRow, view.scrollColumn,
                  std::min(view.scrollRow + window_->visibleRows - 1, kMaxRow),
                  std::min(view.scrollColumn + window_->visibleColumns - 1, kMaxColumn)};
  return Make<RangeObject>(SharedHost(), window_->activeSheet, std::vector{area});
}

Variant WindowObject::Index(Call&) {
  const auto& windows = GetHost().windows;
  return Variant(
      static_cast<long>(std::distance(windows.begin(), std::find(windows.begin(), windows.end(), window_))) +
      1);
}

Variant WindowObject::Activate(Call&) {
  ActivateWindow(SharedHost(), window_);
  return Variant(true);
}

Variant WindowObject::Close(Call&) {
  const bool wasActive = GetHost().ActiveWindow() == window_;
  GetHost().CloseWindow(window_);
  if (wasActive) FireWindowEvent(SharedHost(), AppEvent::kWindowActivate, GetHost().ActiveWindow());
  return Variant(true);
}

Variant WindowObject::FreezePanes(Call& call) {
  SheetView& view = View();
  if (!call.IsPut()) return Variant(view.frozen);
  view.frozen = ToBool(call.Value());
  if (!view.frozen) {
    view.splitRow = 0;
    view.splitColumn = 0;
  } else if (view.splitRow == 0 && view.splitColumn == 0) {
    // Without a split the panes freeze above and left of the active cell.
    view.splitRow = view.selection.front().row1 - 1;
    view.splitColumn = view.selection.front().col1 - 1;
  }
  return {};
}

Variant WindowObject::ViewField(long SheetView::*field, Call& call) {
  SheetView& view = View();
  if (!call.IsPut()) return Variant(view.*field);
  const long number = ToLong(call.Value());
  const bool isScroll = field == &SheetView::scrollRow || field == &SheetView::scrollColumn;
  if (number < (isScroll ? 1 : 0) || number > kMaxRow) Refuse();
  view.*field = number;
  return {};
}

Variant WindowObject::Visible(Call&) {
  return Variant(true);
}

Variant WindowObject::WindowState(Call&) {
  return Variant(kMaximized);
}

const ClassInfo& WindowsObject::Class() const {
  using W = WindowsObject;
  static const ClassInfo info("Windows",
                              {
                                  {L"Count", kGet, Do<&W::Count>},
                                  {L"Item", kGet, Do<&W::Item>},
                                  {L"Application", kGet, Do<&W::Application>},
                              },
                              L"Item", true);
  return info;
}

Variant WindowsObject::Count(Call&) {
  return Variant(static_cast<long>(WindowsOf(GetHost(), workbook_).size()));
}

Variant WindowsObject::Item(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  return Make<WindowObject>(SharedHost(), FindWindowItem(GetHost(), workbook_, *index));
}

std::shared_ptr<Window> FindWindowItem(const Host& host, const std::shared_ptr<Workbook>& workbook,
                                       const VARIANT& index) {
  const auto windows = WindowsOf(host, workbook);
  if (index.vt == VT_BSTR) {
    const std::wstring caption = ToText(index);
    for (const auto& window : windows) {
      if (EqualsIgnoreAsciiCase(host.CaptionOf(*window), caption)) return window;
    }
    throw HostError{DISP_E_BADINDEX};
  }
  const long number = ToLong(index);
  if (number < 1 || number > static_cast<long>(windows.size())) throw HostError{DISP_E_BADINDEX};
  return windows[static_cast<size_t>(number - 1)];
}

}  // namespace qv::devhost::memory
