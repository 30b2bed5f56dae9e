#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "services/listener_request.h"

namespace qv {

/// Runs a workbook action with its argument text and gives its result text; both are JSON.
using McpDispatch = std::function<std::wstring(const std::wstring& action, const std::wstring& json)>;

/// The answer to a JSON-RPC message of the Model Context Protocol. Every message has one, a notification too;
/// the id is a number of 64 bits whatever the client sent, 0 where it sent none. Members count where they
/// belong only; text that is no JSON is searched for them. A byte order mark is passed over. Without a
/// dispatcher no tool runs.
[[nodiscard]] std::wstring HandleJsonRpc(std::wstring_view message, const McpDispatch& dispatch);

/// The body of the answer to an HTTP request that is no yield.
[[nodiscard]] std::string HandleMcpRequest(const ListenerRequest& request, const McpDispatch& dispatch);

}  // namespace qv
