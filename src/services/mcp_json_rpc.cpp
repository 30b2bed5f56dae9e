#include "services/mcp_json_rpc.h"

#include <algorithm>

#include "foundation/json_reader.h"
#include "foundation/json_text.h"
#include "foundation/text.h"
#include "services/mcp_contract.h"

namespace qv {
namespace {

// Codes of JSON-RPC 2.0.
constexpr int kMethodNotFound = -32601;
constexpr int kInternalError = -32603;

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
  const JsonReader parameters(message.Object(L"params"));
  const std::wstring tool = parameters.Text(L"name");
  std::wstring_view arguments = parameters.Object(L"arguments");
  if (arguments.empty()) arguments = L"{}";
  const std::wstring action = JsonReader(arguments).Text(L"action");
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
  const JsonReader reader(message);
  const auto* const method = std::ranges::find(kMethods, reader.Text(L"method"), &RpcMethod::name);
  return Concat(L"{\"jsonrpc\":\"2.0\",\"id\":", reader.Integer(L"id"),
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
