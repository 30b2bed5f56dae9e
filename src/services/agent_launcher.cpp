#include "services/agent_launcher.h"

#include <windows.h>

#include <shlobj.h>

#include <string_view>
#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "services/agent_command.h"
#include "services/agent_files.h"
#include "services/agent_places.h"

namespace qv {
namespace {

constexpr wchar_t kNotInstalled[] = L"未安装该 Agent";
constexpr wchar_t kNoProfile[] = L"无法确定用户目录";
constexpr wchar_t kStartFailed[] = L"无法启动该 Agent";

void LauncherLog(std::wstring_view text) {
  PaneLog(Concat(L"[AgentLauncher] ", text, L"\r\n"));
}

using StartFunction = unsigned long (*)(const ConsoleProgram& program, const std::wstring& directory);

/// One way of starting.
struct Way {
  const wchar_t* name;
  StartFunction start;
  bool inProfile;
};

constexpr wchar_t kAsDesktop[] = L"CreateProcessWithTokenW explorer";

/// The ways to try, in their order. Those with the desktop's rights are possible only for an elevated host,
/// and then no other way will do: each would hand the host's rights on.
std::vector<Way> WaysOf(const LaunchSystem& system) {
  if (system.isElevated()) {
    const DesktopShell shell = system.findDesktopShell();
    if (shell == DesktopShell::kUsual)
      return {{kAsDesktop, system.startAsDesktop, false}, {kAsDesktop, system.startAsDesktop, true}};
    LauncherLog(
        Concat(L"skip ", kAsDesktop,
               shell == DesktopShell::kNone ? L": no desktop shell" : L": desktop shell is elevated"));
  }
  return {{L"CreateProcessW", &StartInConsole, false},
          {L"CreateProcessW", &StartInConsole, true},
          {L"ShellExecuteExW", &StartThroughShell, false}};
}

bool Start(const ConsoleProgram& program, const LaunchSystem& system) {
  for (const Way& way : WaysOf(system)) {
    const std::wstring directory = way.inProfile ? UserProfileDirectory() : AgentWorkspaceDirectory();
    LauncherLog(Concat(L"attempt ", way.name, L" in ", directory));
    const unsigned long error = way.start(program, directory);
    LauncherLog(error == ERROR_SUCCESS ? std::wstring(L"started") : Concat(L"failed with ", error));
    if (error == ERROR_SUCCESS) return true;
  }
  return false;
}

}  // namespace

std::wstring LaunchAgent(AgentKind kind, const ProxyAccess& access, const LaunchSystem& system) {
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
  const ConsoleProgram program{interpreters.comSpec, ConsoleArguments(interpreters, path),
                               std::wstring(RowOf(kind).name),
                               WithEnvironment(CurrentEnvironment(), variables)};
  return Start(program, system) ? L"" : kStartFailed;
}

}  // namespace qv
