#include "services/mcp_answers.h"

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "services/mcp_port.h"

namespace qv {
namespace {

constexpr std::wstring_view kPortTakenText = L"端口已被其他表格占用";
constexpr std::wstring_view kNotStartedText = L"MCP server 启动失败";

std::wstring_view OwnerName(McpOwner owner) {
  switch (owner) {
    case McpOwner::kSelf:
      return L"self";
    case McpOwner::kOther:
      return L"other";
    case McpOwner::kNone:
      break;
  }
  return L"none";
}

std::wstring State(bool ok, McpOwner owner, std::wstring_view rest) {
  return Concat(L"{\"ok\":", BoolWord(ok), L",\"owner\":\"", OwnerName(owner), L"\",\"running\":",
                BoolWord(owner == McpOwner::kSelf), rest, L'}');
}

std::wstring PortMember() {
  return Concat(L",\"port\":", kMcpPort);
}

}  // namespace

std::wstring McpStatusAnswer(McpOwner owner) {
  return State(true, owner, PortMember());
}

std::wstring McpStartAnswer(McpOwner owner) {
  if (owner == McpOwner::kSelf) return State(true, owner, L",\"mode\":\"external\"" + PortMember());
  return State(false, owner,
               L",\"error\":" + JsonQuote(owner == McpOwner::kOther ? kPortTakenText : kNotStartedText));
}

std::wstring McpStopAnswer() {
  return State(true, McpOwner::kNone, PortMember());
}

}  // namespace qv
