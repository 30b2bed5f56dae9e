#include "services/codex_config.h"

#include <algorithm>
#include <vector>

#include "services/agent_kinds.h"
#include "services/toml_statements.h"

namespace qv {
namespace {

using Kind = TomlStatement::Kind;

const TomlKey& EntryKey() {
  static const TomlKey key = {"mcp_servers", std::string(kMcpEntryName)};
  return key;
}

/// The environment of a server that is a program. Codex takes no file in which one stands beside an address.
const TomlKey& EnvironmentKey() {
  static const TomlKey key = {"mcp_servers", std::string(kMcpEntryName), "env"};
  return key;
}

bool IsPrefix(const TomlKey& prefix, const TomlKey& key) {
  return prefix.size() <= key.size() && std::ranges::equal(prefix, std::span(key).first(prefix.size()));
}

TomlKey Joined(const TomlKey& table, const TomlKey& key) {
  TomlKey joined = table;
  joined.insert(joined.end(), key.begin(), key.end());
  return joined;
}

/// Whether a section of the entry's own could not stand beside this statement.
bool ContradictsSection(const TomlStatement& statement, const TomlKey& table) {
  if (statement.kind != Kind::kValue && IsPrefix(EnvironmentKey(), statement.key)) return true;
  if (statement.kind == Kind::kTable) return false;
  if (statement.kind == Kind::kArrayTable) return IsPrefix(statement.key, EntryKey());
  // What stands in the section itself goes with it, and its subtables may stand.
  if (IsPrefix(EntryKey(), table)) return false;
  const TomlKey key = Joined(table, statement.key);
  return IsPrefix(key, EntryKey()) || IsPrefix(EntryKey(), key);
}

struct Section {
  std::size_t begin;
  std::size_t end;
};

/// The sections to remove; nothing when the file is not to be touched.
std::optional<std::vector<Section>> EntrySections(std::string_view toml) {
  std::vector<Section> sections;
  TomlKey table;
  bool inside = false;
  TomlReader reader(toml);
  while (const auto statement = reader.Next()) {
    if (ContradictsSection(*statement, table)) return std::nullopt;
    if (statement->kind == Kind::kValue) continue;
    table = statement->key;
    const bool isEntry = table == EntryKey();
    if (isEntry && !inside) {
      // The end of the line ahead goes too.
      const std::size_t lineEnd = toml.substr(0, statement->begin).rfind('\n');
      sections.push_back({lineEnd == std::string_view::npos ? 0 : lineEnd, toml.size()});
    } else if (inside && !isEntry) {
      sections.back().end = statement->begin;
    }
    inside = isEntry;
  }
  return reader.IsMalformed() ? std::nullopt : std::optional(std::move(sections));
}

/// The inside of a string value without escapes; empty for anything else.
std::string_view PlainString(std::string_view value) {
  if (value.size() < 2 || value.front() != value.back()) return {};
  return value.front() == '"' || value.front() == '\'' ? value.substr(1, value.size() - 2)
                                                       : std::string_view();
}

}  // namespace

std::optional<std::string> WithCodexEntry(std::string_view toml) {
  const auto sections = EntrySections(toml);
  if (!sections) return std::nullopt;
  std::string text;
  std::size_t from = 0;
  for (const Section& section : *sections) {
    text += toml.substr(from, section.begin - from);
    text += '\n';
    from = section.end;
  }
  text += toml.substr(from);
  text.resize(text.find_last_not_of(" \t\r\n") + 1);
  if (!text.empty()) text += "\n\n";
  text.append("[mcp_servers.")
      .append(kMcpEntryName)
      .append("]\nurl = \"")
      .append(kMcpEntryUrl)
      .append("\"\n");
  return text;
}

bool CodexPointsAtMcpServer(std::string_view toml) {
  const TomlKey url = Joined(EntryKey(), {"url"});
  TomlKey table;
  bool found = false;
  TomlReader reader(toml);
  while (const auto statement = reader.Next()) {
    if (statement->kind != Kind::kValue) table = statement->key;
    if (statement->kind == Kind::kValue && Joined(table, statement->key) == url)
      found = found || IsMcpEntryUrl(PlainString(statement->value));
  }
  return found && !reader.IsMalformed();
}

}  // namespace qv
