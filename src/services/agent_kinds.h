#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// The coding agents that can be connected to the workbook.
enum class AgentKind { kOpenCode, kClaude, kCodex };

/// What is known of a kind beforehand.
struct AgentKindRow {
  AgentKind kind;
  /// What the panel calls it.
  std::wstring_view id;
  /// What the user reads.
  std::wstring_view name;
  /// What it is called on the search path, without an extension.
  std::wstring_view command;
  /// Its configuration file below the user's profile, from the backslash on.
  std::wstring_view configFile;
  /// The add-in can install a copy of its own.
  bool installable;
};

/// Every kind in the order in which it is reported.
[[nodiscard]] std::span<const AgentKindRow> AgentKinds();

[[nodiscard]] const AgentKindRow& RowOf(AgentKind kind);

/// The kind with exactly this id.
[[nodiscard]] std::optional<AgentKind> AgentKindOf(std::wstring_view id);

/// Where the agents find the tool server, as their configuration files say it.
inline constexpr std::string_view kMcpEntryName = "qv-excel";
inline constexpr int kMcpEntryPort = 7878;
inline constexpr std::string_view kMcpEntryUrl = "http://127.0.0.1:7878/mcp";

/// Whether `url` is the address of a tool server on this machine, with the port that the entries name. A "/"
/// at its end is accepted.
[[nodiscard]] bool IsMcpEntryUrl(std::string_view url);

/// Folder below the user's profile in which agents are started, from the backslash on.
inline constexpr std::wstring_view kAgentWorkspace = L"\\Quorvantis\\opencode-workspace";

/// `name` in `directory`, with a backslash between them unless the directory ends in one, in "/" or in ":".
[[nodiscard]] std::wstring PathIn(std::wstring_view directory, std::wstring_view name);

}  // namespace qv
