#pragma once

#include <string_view>

namespace qv {

// Whether this user has seen the first-run welcome, kept in the registry for all hosts together.

/// True unless the mark is there and says so.
[[nodiscard]] bool IsWelcomeDue();

/// Marks the welcome as shown in `host` ("excel", "wps-excel", …). When that fails it comes again at the next
/// connection.
void MarkWelcomeShown(std::wstring_view host);

}  // namespace qv
