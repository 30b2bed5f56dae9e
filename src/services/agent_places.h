#pragma once

#include <chrono>
#include <string>

#include "services/agent_command.h"
#include "services/agent_kinds.h"

namespace qv {

/// The user's profile folder (USERPROFILE); empty when it is unknown or longer than 259 characters.
[[nodiscard]] std::wstring UserProfileDirectory();

/// An agent's configuration file; empty without a profile folder.
[[nodiscard]] std::wstring AgentConfigPath(AgentKind kind);

/// The folder in which agents are started; empty without a profile folder. It need not exist.
[[nodiscard]] std::wstring AgentWorkspaceDirectory();

/// Where the add-in keeps its own copy of OpenCode, beside its DLL; it need not exist.
[[nodiscard]] std::wstring OpenCodeDirectory();

/// Held by whoever replaces the add-in's own copy, and by whoever runs it to learn its version: neither finds
/// the other's work half done. The patience is for a version check, which takes 5 s at most.
inline constexpr wchar_t kOwnCopyLock[] = L"Local\\Quorvantis.AgentInstaller";
inline constexpr std::chrono::seconds kOwnCopyPatience{6};

/// "opencode.exe" in a folder, or in the first of its subfolders that has one; empty when there is none.
[[nodiscard]] std::wstring LocateOpenCode(const std::wstring& directory);

/// An agent's executable: of OpenCode the add-in's own copy first, else from the search path. Empty when
/// there is none.
[[nodiscard]] std::wstring AgentExecutable(AgentKind kind);

/// The system's own directory, without a trailing backslash.
[[nodiscard]] std::wstring SystemDirectory();

[[nodiscard]] Interpreters SystemInterpreters();

/// All that an executable prints when it is run with "--version", for at most 5 s; empty when nothing. Worker
/// thread.
[[nodiscard]] std::string AgentVersionOutput(const std::wstring& path);

/// The first line of that: what the executable says of itself.
[[nodiscard]] std::wstring GetAgentVersion(const std::wstring& path);

}  // namespace qv
