#include "services/agent_places.h"

#include <windows.h>

#include <array>

#include "foundation/file_io.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "services/child_process.h"
#include "services/find_executable.h"

namespace qv {
namespace {

constexpr wchar_t kOpenCodeFile[] = L"opencode.exe";

std::wstring UnderProfile(std::wstring_view rest) {
  const std::wstring profile = UserProfileDirectory();
  return profile.empty() ? profile : Concat(profile, rest);
}

}  // namespace

std::wstring UserProfileDirectory() {
  std::wstring profile = EnvironmentValue(L"USERPROFILE");
  return profile.size() < MAX_PATH ? profile : std::wstring();
}

std::wstring AgentConfigPath(AgentKind kind) {
  return UnderProfile(RowOf(kind).configFile);
}

std::wstring AgentWorkspaceDirectory() {
  return UnderProfile(kAgentWorkspace);
}

std::wstring OpenCodeDirectory() {
  return GetModuleDirectory() + L"\\agents\\opencode";
}

std::wstring LocateOpenCode(const std::wstring& directory) {
  std::wstring path = PathIn(directory, kOpenCodeFile);
  if (IsExistingFile(path)) return path;
  WIN32_FIND_DATAW found{};
  const UniqueFind search(FindFirstFileW(PathIn(directory, L"*").c_str(), &found));
  if (!search) return {};
  do {
    const std::wstring_view name = found.cFileName;
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 || name == L"." || name == L"..") continue;
    path = PathIn(PathIn(directory, name), kOpenCodeFile);
    if (IsExistingFile(path)) return path;
  } while (FindNextFileW(search.Get(), &found));
  return {};
}

std::wstring AgentExecutable(AgentKind kind) {
  std::wstring own = kind == AgentKind::kOpenCode ? LocateOpenCode(OpenCodeDirectory()) : std::wstring();
  return own.empty() ? FindExecutable(std::wstring(RowOf(kind).command)) : own;
}

std::wstring SystemDirectory() {
  std::array<wchar_t, MAX_PATH> path{};
  const UINT length = GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size()));
  return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
}

Interpreters SystemInterpreters() {
  std::wstring comSpec = EnvironmentValue(L"ComSpec");
  if (comSpec.empty()) comSpec = SystemDirectory() + L"\\cmd.exe";
  return {std::move(comSpec), SystemDirectory()};
}

std::string AgentVersionOutput(const std::wstring& path) {
  const std::wstring application = IsPlainProgram(path) ? path : std::wstring();
  return RunCaptured(application, ProgramCommandLine(SystemInterpreters(), path, L"--version")).output;
}

std::wstring GetAgentVersion(const std::wstring& path) {
  return FirstLine(AgentVersionOutput(path));
}

}  // namespace qv
