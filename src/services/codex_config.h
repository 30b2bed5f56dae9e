#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// Codex's configuration (TOML, without a byte order mark) with one section for the tool server, as the last
/// one. Sections of that name go, each with all that stands before the next table, comments included; every
/// other byte stays. Nothing when the text is no TOML, or names the server in a way that a section of its own
/// would contradict (an inline table, a dotted key, an array of tables, a subtable "env"): such a file is
/// left to its owner.
[[nodiscard]] std::optional<std::string> WithCodexEntry(std::string_view toml);

/// Whether the entry's address is a tool server's with the expected port.
[[nodiscard]] bool CodexPointsAtMcpServer(std::string_view toml);

}  // namespace qv
