#include "engines/memory/host_events.h"

#include <algorithm>
#include <array>

#include "engines/memory/range_object.h"
#include "engines/memory/window_object.h"
#include "engines/memory/workbook_object.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {
namespace {

bool IsHeard(const Host& host) {
  return host.events != nullptr && host.enableEvents && host.events->SinkCount() > 0;
}

template <size_t Count>
void Fire(Host& host, AppEvent event, const std::array<Variant, Count>& args) {
  // A sink may end the engine.
  const ComPtr<IDispatch> keptAlive(host.application);
  host.events->Fire(event, args);
}

}  // namespace

void FireSheetEvent(const std::shared_ptr<Host>& host, AppEvent event, const std::shared_ptr<Sheet>& sheet) {
  if (!IsHeard(*host) || sheet == nullptr) return;
  Fire(*host, event, std::array{Make<WorksheetObject>(host, sheet)});
}

void FireRangeEvent(const std::shared_ptr<Host>& host, AppEvent event, const std::shared_ptr<Sheet>& sheet,
                    const std::vector<Area>& areas) {
  if (!IsHeard(*host) || sheet == nullptr) return;
  Fire(*host, event, std::array{Make<WorksheetObject>(host, sheet), Make<RangeObject>(host, sheet, areas)});
}

void FireWorkbookEvent(const std::shared_ptr<Host>& host, AppEvent event,
                       const std::shared_ptr<Workbook>& workbook) {
  if (!IsHeard(*host) || workbook == nullptr) return;
  Fire(*host, event, std::array{Make<WorkbookObject>(host, workbook)});
}

void FireSheetAdded(const std::shared_ptr<Host>& host, const std::shared_ptr<Workbook>& workbook,
                    const std::shared_ptr<Sheet>& sheet) {
  if (!IsHeard(*host)) return;
  Fire(*host, AppEvent::kWorkbookNewSheet,
       std::array{Make<WorkbookObject>(host, workbook), Make<WorksheetObject>(host, sheet)});
}

void FireWindowEvent(const std::shared_ptr<Host>& host, AppEvent event,
                     const std::shared_ptr<Window>& window) {
  if (!IsHeard(*host) || window == nullptr) return;
  const auto workbook = window->workbook.lock();
  if (workbook == nullptr) return;
  Fire(*host, event, std::array{Make<WorkbookObject>(host, workbook), Make<WindowObject>(host, window)});
}

bool FireBeforeClose(const std::shared_ptr<Host>& host, const std::shared_ptr<Workbook>& workbook) {
  if (!IsHeard(*host)) return false;
  const ComPtr<IDispatch> keptAlive(host->application);
  return host->events->FireBeforeClose(Make<WorkbookObject>(host, workbook));
}

void ActivateWindow(const std::shared_ptr<Host>& host, const std::shared_ptr<Window>& window) {
  const auto before = host->ActiveWindow();
  if (before == window || window->closed) return;
  host->windows.remove(window);
  host->windows.push_front(window);
  const auto oldBook = before == nullptr ? nullptr : before->workbook.lock();
  const auto newBook = window->workbook.lock();
  FireWindowEvent(host, AppEvent::kWindowDeactivate, before);
  if (oldBook != newBook) {
    FireWorkbookEvent(host, AppEvent::kWorkbookDeactivate, oldBook);
    FireWorkbookEvent(host, AppEvent::kWorkbookActivate, newBook);
  }
  FireWindowEvent(host, AppEvent::kWindowActivate, window);
}

void ActivateSheet(const std::shared_ptr<Host>& host, const std::shared_ptr<Sheet>& sheet) {
  const auto window = FrontWindowOf(*host, *sheet);
  if (window == nullptr || sheet->visible != -1) Refuse();
  const auto before = window->activeSheet;
  if (before == sheet) return;
  window->activeSheet = sheet;
  FireSheetEvent(host, AppEvent::kSheetDeactivate, before);
  FireSheetEvent(host, AppEvent::kSheetActivate, sheet);
}

void SelectAreas(const std::shared_ptr<Host>& host, const std::shared_ptr<Sheet>& sheet,
                 const std::vector<Area>& areas) {
  const auto window = FrontWindowOf(*host, *sheet);
  if (window == nullptr || window->activeSheet != sheet) Refuse();
  SheetView& view = window->ViewOf(*sheet);
  const bool changed =
      view.selection != areas || view.selectedChart != nullptr || !view.selectedShapes.empty();
  view.selection = areas;
  view.activeCell.reset();
  view.selectedChart = nullptr;
  view.selectedShapes.clear();
  if (changed) FireRangeEvent(host, AppEvent::kSheetSelectionChange, sheet, areas);
}

std::shared_ptr<Window> FrontWindowOf(const Host& host, const Sheet& sheet) {
  const auto workbook = sheet.workbook.lock();
  const auto found = std::find_if(host.windows.begin(), host.windows.end(),
                                  [&](const auto& window) { return window->workbook.lock() == workbook; });
  return workbook == nullptr || found == host.windows.end() ? nullptr : *found;
}

}  // namespace qv::devhost::memory
