#include "services/agent_kinds.h"

#include <algorithm>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr AgentKindRow kRows[] = {
    {AgentKind::kOpenCode, L"opencode", L"OpenCode (Quorvantis)", L"opencode",
     L"\\Quorvantis\\opencode-workspace\\opencode.json", true},
    {AgentKind::kClaude, L"claude", L"Claude Code", L"claude", L"\\.claude.json", false},
    {AgentKind::kCodex, L"codex", L"Codex CLI", L"codex", L"\\.codex\\config.toml", false},
};

constexpr std::string_view kUrlHead = "http://127.0.0.1:";
constexpr std::string_view kUrlTail = "/mcp";
constexpr int kMaxPort = 65535;

bool Take(std::string_view& text, std::string_view part) {
  if (!text.starts_with(part)) return false;
  text.remove_prefix(part.size());
  return true;
}

/// Takes a decimal number; nothing when there is none or it is no port's.
std::optional<int> TakePort(std::string_view& text) {
  std::optional<int> port;
  for (; !text.empty() && text[0] >= '0' && text[0] <= '9'; text.remove_prefix(1)) {
    port = port.value_or(0) * 10 + (text[0] - '0');
    if (*port > kMaxPort) return std::nullopt;
  }
  return port;
}

}  // namespace

std::span<const AgentKindRow> AgentKinds() {
  return kRows;
}

const AgentKindRow& RowOf(AgentKind kind) {
  return *std::ranges::find(kRows, kind, &AgentKindRow::kind);
}

std::optional<AgentKind> AgentKindOf(std::wstring_view id) {
  const auto* const row = std::ranges::find(kRows, id, &AgentKindRow::id);
  return row == std::end(kRows) ? std::nullopt : std::optional(row->kind);
}

bool IsMcpEntryUrl(std::string_view url) {
  if (!Take(url, kUrlHead) || TakePort(url) != kMcpEntryPort || !Take(url, kUrlTail)) return false;
  return url.empty() || url == "/";
}

std::wstring PathIn(std::wstring_view directory, std::wstring_view name) {
  const bool needsBackslash =
      directory.empty() || std::wstring_view(L"\\/:").find(directory.back()) == std::wstring_view::npos;
  return Concat(directory, needsBackslash ? L"\\" : L"", name);
}

}  // namespace qv
