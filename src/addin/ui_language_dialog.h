#pragma once

#include <windows.h>

#include <functional>

namespace qv {

/// Lets the user choose the display language in a small window over its owner (may be null), and returns when
/// it is closed. A choice is stored, the ribbon refreshed by `refreshRibbon`, and every open panel told.
/// Never called from inside a browser's event. Host UI thread.
void ShowUiLanguageDialog(HWND owner, const std::function<void()>& refreshRibbon);

}  // namespace qv
