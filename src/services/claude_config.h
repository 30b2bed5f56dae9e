#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// Claude Code's configuration (JSON, without a byte order mark) with an entry for the tool server among the
/// servers of the top level; servers of single projects are not looked at. An older entry is replaced whole,
/// whatever is in it; every other byte stays. Nothing when the text is no JSON object, or when its
/// "mcpServers" is neither an object nor null: such a file is left to its owner.
[[nodiscard]] std::optional<std::string> WithClaudeEntry(std::string_view json);

/// Whether the entry's address is a tool server's with the expected port.
[[nodiscard]] bool ClaudePointsAtMcpServer(std::string_view json);

}  // namespace qv
