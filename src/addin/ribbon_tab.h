#pragma once

#include <windows.h>

namespace qv {

/// Selects the add-in's ribbon tab in the host's top-level window, through accessibility, else through UI
/// Automation: no ribbon interface of WPS or of older hosts can do it. Logs how it went. The search is
/// bounded in windows, elements and time. Host UI thread, outside of browser events.
void ActivateRibbonTab(HWND host);

}  // namespace qv
