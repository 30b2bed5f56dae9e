#include "services/agent_launcher.h"

#include <windows.h>

#include <shlobj.h>

#include <string_view>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "services/agent_command.h"
#include "services/agent_files.h"
#include "services/agent_places.h"
#include "services/console_start.h"

namespace qv {
namespace {

constexpr wchar_t kNotInstalled[] = L"未安装该 Agent";
constexpr wchar_t kNoProfile[] = L"无法确定用户目录";
constexpr wchar_t kStartFailed[] = L"无法启动该 Agent";

void LauncherLog(std::wstring_view text) {
  PaneLog(Concat(L"[AgentLauncher] ", text, L"\r\n"));
}

/// One way of starting, tried in the order of the table.
struct Way {
  const wchar_t* name;
  unsigned long (*start)(const ConsoleProgram& program, const std::wstring& directory);
  bool inProfile;
  /// Only worth trying, and only possible, with an administrator's rights.
  bool whenElevated;
};

constexpr Way kWays[] = {
    {L"CreateProcessWithTokenW explorer", &StartInConsoleAsDesktop, false, true},
    {L"CreateProcessWithTokenW explorer", &StartInConsoleAsDesktop, true, true},
    {L"CreateProcessW", &StartInConsole, false, false},
    {L"CreateProcessW", &StartInConsole, true, false},
    {L"ShellExecuteExW", &StartThroughShell, false, false},
};

bool Start(const ConsoleProgram& program) {
  const bool isElevated = IsProcessElevated();
  for (const Way& way : kWays) {
    if (way.whenElevated && !isElevated) continue;
    const std::wstring directory = way.inProfile ? UserProfileDirectory() : AgentWorkspaceDirectory();
    LauncherLog(Concat(L"attempt ", way.name, L" in ", directory));
    const unsigned long error = way.start(program, directory);
    LauncherLog(error == ERROR_SUCCESS ? std::wstring(L"started") : Concat(L"failed with ", error));
    if (error == ERROR_SUCCESS) return true;
  }
  return false;
}

}  // namespace

std::wstring LaunchAgent(AgentKind kind, const ProxyAccess& access) {
  const std::wstring path = AgentExecutable(kind);
  if (path.empty()) return kNotInstalled;
  const std::wstring workspace = AgentWorkspaceDirectory();
  if (workspace.empty()) return kNoProfile;
  // Where it cannot be made, the profile folder is there.
  SHCreateDirectoryExW(nullptr, workspace.c_str(), nullptr);

  EnvironmentVariables variables;
  if (kind == AgentKind::kOpenCode) {
    std::wstring error = WriteOpenCodeConfig(access);
    if (!error.empty()) return error;
    variables = OpenCodeEnvironment(access, AgentConfigPath(kind));
  }
  const Interpreters interpreters = SystemInterpreters();
  const bool started =
      Start({interpreters.comSpec, ConsoleArguments(interpreters, path), std::wstring(RowOf(kind).name),
             WithEnvironment(CurrentEnvironment(), variables)});
  return started ? L"" : kStartFailed;
}

}  // namespace qv
