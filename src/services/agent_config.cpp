#include "services/agent_config.h"

#include "foundation/text.h"
#include "services/claude_config.h"
#include "services/codex_config.h"
#include "services/opencode_config.h"

namespace qv {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view MarkOf(std::string_view bytes) {
  return bytes.starts_with(kByteOrderMark) ? kByteOrderMark : std::string_view();
}

/// Zero bytes are valid, but neither format knows them; text in UTF-16 has them.
bool IsUtf8Text(std::string_view bytes) {
  return bytes.find('\0') == std::string_view::npos && ToUtf8(FromUtf8(bytes)) == bytes;
}

}  // namespace

std::optional<std::string> WithMcpEntry(AgentKind kind, std::string_view bytes) {
  if (!IsUtf8Text(bytes)) return std::nullopt;
  const std::string_view mark = MarkOf(bytes);
  const std::string_view text = bytes.substr(mark.size());
  auto changed = kind == AgentKind::kCodex ? WithCodexEntry(text) : WithClaudeEntry(text);
  if (changed) changed->insert(0, mark);
  return changed;
}

bool PointsAtMcpServer(AgentKind kind, std::string_view bytes) {
  const std::string_view text = bytes.substr(MarkOf(bytes).size());
  switch (kind) {
    case AgentKind::kOpenCode:
      return OpenCodePointsAtMcpServer(text);
    case AgentKind::kClaude:
      return ClaudePointsAtMcpServer(text);
    case AgentKind::kCodex:
      return CodexPointsAtMcpServer(text);
  }
  return false;
}

}  // namespace qv
