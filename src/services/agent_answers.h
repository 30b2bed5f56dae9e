#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qv {

// What the panel is told about agents, as JSON texts.

/// One agent on this machine.
struct AgentInfo {
  std::wstring id;
  std::wstring name;
  std::wstring command;
  /// Full path of the executable; empty when there is none.
  std::wstring path;
  /// Empty when unknown.
  std::wstring version;
  bool installed = false;
  /// The executable is the add-in's own copy.
  bool bundled = false;
  bool installable = false;
  /// Its configuration points at the tool server.
  bool mcpConfigured = false;
  /// Empty when there is no user profile.
  std::wstring configPath;
};

/// {"agents":[…]}
[[nodiscard]] std::wstring AgentListJson(const std::vector<AgentInfo>& agents);

/// How writing an agent's configuration ended.
struct ConfigureResult {
  bool success = false;
  std::wstring configPath;
  /// Empty when no backup was made.
  std::wstring backupPath;
  std::wstring error;
};
[[nodiscard]] std::wstring ConfigureJson(const ConfigureResult& result);

/// How an installation ended.
struct InstallResult {
  bool success = false;
  /// Full path of "opencode.exe".
  std::wstring exePath;
  std::wstring version;
  std::wstring error;
};
[[nodiscard]] std::wstring InstallJson(const InstallResult& result);

/// {"success":true}, or {"success":false,"error":…} when there is an error text.
[[nodiscard]] std::wstring OutcomeJson(std::wstring_view error);

/// The answer to an id that names no agent.
inline constexpr std::wstring_view kUnknownAgentError = L"未找到该 Agent";

}  // namespace qv
