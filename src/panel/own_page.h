#pragma once

#include <string_view>

#include "foundation/host_session.h"
#include "panel/web_view.h"

namespace qv {

/// Whether an address belongs to the service, whose pages alone have a say in the add-in and hear from it.
[[nodiscard]] inline bool IsOwnPage(std::wstring_view address) {
  return IsSameOrigin(address, HostSession::Get().Endpoint());
}

/// Whether the page that a view shows is one of the service. UI thread.
[[nodiscard]] inline bool ShowsOwnPage(const WebView& view) {
  return IsOwnPage(view.Source());
}

}  // namespace qv
