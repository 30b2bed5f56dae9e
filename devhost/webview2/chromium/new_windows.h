#pragma once

#include "webview2/chromium/devtools_client.h"

namespace qv::devhost {

/// From now on windows that pages open are closed before they load anything: nobody would see them. Windows
/// that the client asks for are let go on.
void CloseNewWindows(DevToolsClient& client);

}  // namespace qv::devhost
