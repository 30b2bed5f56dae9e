#pragma once

#include <string_view>

namespace qv {

/// One line of the proxy in the general log; `text` has no line end. Any thread.
void ProxyLog(std::wstring_view text);

}  // namespace qv
