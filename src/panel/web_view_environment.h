#pragma once

#include <windows.h>

#include <string>

#include "panel/webview2_interfaces.h"

namespace qv {

/// The browser's profile folder, %LOCALAPPDATA%\Quorvantis\WebView2, created when missing; empty when there
/// is no such folder.
[[nodiscard]] std::wstring WebViewUserDataDir();

/// Starts a browser environment on the given profile folder; S_OK promises that the handler is invoked later
/// on this thread. Uses WebView2Loader.dll from beside the add-in; where there is none, the installed
/// Evergreen runtime directly. What was loaded stays loaded for the life of the process, because the browser
/// does not support being unloaded.
[[nodiscard]] HRESULT CreateWebViewEnvironment(
    const std::wstring& userDataDir, ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler);

}  // namespace qv
