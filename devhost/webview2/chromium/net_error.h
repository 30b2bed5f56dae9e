#pragma once

#include <string_view>

#include "panel/webview2_interfaces.h"

namespace qv::devhost {

/// The WebView2 status for the browser's name of a failed load, such as "net::ERR_CONNECTION_REFUSED".
/// UNKNOWN for names that have no status of their own.
[[nodiscard]] COREWEBVIEW2_WEB_ERROR_STATUS StatusOfNetError(std::string_view name);

}  // namespace qv::devhost
