#include "services/mcp_json_rpc.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

#include "foundation/json_reader.h"
#include "foundation/json_text.h"
#include "foundation/text.h"
#include "services/mcp_contract.h"

namespace qv {
namespace {

// Codes of JSON-RPC 2.0.
constexpr int kMethodNotFound = -32601;
constexpr int kInternalError = -32603;

constexpr wchar_t kByteOrderMark = L'\xFEFF';

// What is not the object's own is not looked for inside it: a cell's value may be called "id" as well.

std::wstring OwnText(const JsonReader& json, std::wstring_view name) {
  return json.IsObject() ? TextOfValue(json.Value(name)).value_or(std::wstring()) : json.Text(name);
}

std::wstring_view OwnObject(const JsonReader& json, std::wstring_view name) {
  const std::wstring_view value = json.Value(name);
  return value.starts_with(L'{') ? value : std::wstring_view();
}

/// The digits of the message's id, saturated to 64 bits (clients count in milliseconds, for one); 0 for none.
std::int64_t IdOf(const JsonReader& message) {
  const std::string digits = ToUtf8(message.Value(L"id"));
  std::int64_t id = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), id);
  if (result.ec != std::errc::result_out_of_range) return id;
  return digits.starts_with('-') ? std::numeric_limits<std::int64_t>::min()
                                 : std::numeric_limits<std::int64_t>::max();
}

std::wstring_view WithoutByteOrderMark(std::wstring_view text) {
  return text.substr(text.starts_with(kByteOrderMark) ? 1 : 0);
}

// The handlers below give what follows the id in an answer: ,"result":… or ,"error":…

std::wstring Failure(int code, std::wstring_view message) {
  return Concat(L",\"error\":{\"code\":", code, L",\"message\":", JsonQuote(message), L'}');
}

std::wstring Initialize(const JsonReader&, const McpDispatch&) {
  return Concat(LR"(,"result":{"protocolVersion":"2024-11-05",)",
                LR"("serverInfo":{"name":"qv-excel","version":"2.0.0"},"capabilities":{"tools":{}},)",
                L"\"instructions\":", JsonQuote(McpInstructions()), L'}');
}

std::wstring ListTools(const JsonReader&, const McpDispatch&) {
  std::wstring tools;
  for (const McpTool& tool : McpToolTable()) {
    if (!tools.empty()) tools += L',';
    tools += Concat(L"{\"name\":\"", tool.name, L"\",\"description\":\"", tool.description,
                    L"\",\"inputSchema\":", tool.inputSchema, L'}');
  }
  return Concat(L",\"result\":{\"tools\":[", tools, L"]}");
}

std::wstring CallTool(const JsonReader& message, const McpDispatch& dispatch) {
  if (!dispatch) return Failure(kInternalError, L"no dispatcher");
  const JsonReader parameters(OwnObject(message, L"params"));
  const std::wstring tool = OwnText(parameters, L"name");
  std::wstring_view arguments = OwnObject(parameters, L"arguments");
  if (arguments.empty()) arguments = L"{}";
  const std::wstring action = OwnText(JsonReader(arguments), L"action");
  const std::wstring_view workbookAction = WorkbookActionOf(tool, action);
  if (workbookAction.empty()) {
    return Failure(kMethodNotFound, Concat(L"unknown tool or action: ", tool, L'/', action));
  }
  const std::wstring result = dispatch(std::wstring(workbookAction), std::wstring(arguments));
  return Concat(LR"(,"result":{"content":[{"type":"text","text":)", JsonQuote(result), L"}]}");
}

struct RpcMethod {
  std::wstring_view name;
  std::wstring (*answer)(const JsonReader& message, const McpDispatch& dispatch);
};

constexpr RpcMethod kMethods[] = {
    {L"initialize", &Initialize},
    {L"tools/list", &ListTools},
    {L"tools/call", &CallTool},
};

}  // namespace

std::wstring HandleJsonRpc(std::wstring_view message, const McpDispatch& dispatch) {
  const JsonReader reader(WithoutByteOrderMark(message));
  const auto* const method = std::ranges::find(kMethods, OwnText(reader, L"method"), &RpcMethod::name);
  return Concat(L"{\"jsonrpc\":\"2.0\",\"id\":", IdOf(reader),
                method == std::end(kMethods) ? Failure(kMethodNotFound, L"method not found")
                                             : method->answer(reader, dispatch),
                L'}');
}

std::string HandleMcpRequest(const ListenerRequest& request, const McpDispatch& dispatch) {
  if (request.method == "OPTIONS") return "{}";
  if (request.path.find("/mcp") == std::string::npos) return "{\"error\":\"not found\"}";
  return ToUtf8(HandleJsonRpc(FromUtf8(request.body), dispatch));
}

}  // namespace qv
