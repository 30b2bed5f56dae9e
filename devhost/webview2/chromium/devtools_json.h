#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace qv::devhost {

/// Keeps the order of members, as JSON.stringify does.
using Json = nlohmann::ordered_json;

/// A message of the browser. Half a surrogate pair, which a page's string may hold and which the browser
/// passes on as an escape, becomes U+FFFD. Throws nlohmann::json::exception for anything else that is no
/// JSON.
[[nodiscard]] Json ParseDevToolsMessage(std::string text);

}  // namespace qv::devhost
