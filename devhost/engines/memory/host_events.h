#pragma once

#include <memory>
#include <vector>

#include "engines/common/app_events.h"
#include "engines/memory/host.h"

namespace qv::devhost::memory {

// What the model does by itself on the way: changes of what is active, with the events that go with them.
// Events are silent while the host's EnableEvents is off, nobody listens, or the engine has gone.

void FireSheetEvent(const std::shared_ptr<Host>& host, AppEvent event, const std::shared_ptr<Sheet>& sheet);
/// SheetChange and SheetSelectionChange.
void FireRangeEvent(const std::shared_ptr<Host>& host, AppEvent event, const std::shared_ptr<Sheet>& sheet,
                    const std::vector<Area>& areas);
void FireWorkbookEvent(const std::shared_ptr<Host>& host, AppEvent event,
                       const std::shared_ptr<Workbook>& workbook);
/// WorkbookNewSheet.
void FireSheetAdded(const std::shared_ptr<Host>& host, const std::shared_ptr<Workbook>& workbook,
                    const std::shared_ptr<Sheet>& sheet);
void FireWindowEvent(const std::shared_ptr<Host>& host, AppEvent event,
                     const std::shared_ptr<Window>& window);

/// WorkbookBeforeClose; true when a sink has cancelled the closing.
[[nodiscard]] bool FireBeforeClose(const std::shared_ptr<Host>& host,
                                   const std::shared_ptr<Workbook>& workbook);

/// Brings the window to the front, with WindowDeactivate and WindowActivate, and the workbook's twins of them
/// when the workbook changes too.
void ActivateWindow(const std::shared_ptr<Host>& host, const std::shared_ptr<Window>& window);

/// Shows the sheet in the workbook's frontmost window, with SheetDeactivate and SheetActivate. A hidden sheet
/// is refused.
void ActivateSheet(const std::shared_ptr<Host>& host, const std::shared_ptr<Sheet>& sheet);

/// Selects cells in the workbook's frontmost window, with SheetSelectionChange; refused where another sheet
/// is active there.
void SelectAreas(const std::shared_ptr<Host>& host, const std::shared_ptr<Sheet>& sheet,
                 const std::vector<Area>& areas);

/// The frontmost window of the sheet's workbook; null when the workbook is closed.
[[nodiscard]] std::shared_ptr<Window> FrontWindowOf(const Host& host, const Sheet& sheet);

}  // namespace qv::devhost::memory
