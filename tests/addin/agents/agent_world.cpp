#include "agent_world.h"

#include <windows.h>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "services/agent_places.h"
#include "services/find_executable.h"

namespace qv {
namespace {

/// The Windows form of a path that the build system gave.
std::wstring WindowsPath(std::wstring_view path) {
  return ReplaceAll(path.starts_with(L'/') ? Concat(L"Z:", path) : std::wstring(path), L"/", L"\\");
}

std::wstring LogText() {
  const std::string bytes = ReadBytes(GetPaneTraceLogPath());
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t));
  return text;
}

}  // namespace

AgentWorld::AgentWorld() : logged_(LogText().size()) {
  std::filesystem::create_directories(Profile());
  std::filesystem::create_directories(Programs());
  SetVariable(L"USERPROFILE", Profile());
  SetVariable(L"PATH", Programs());
  SetVariable(L"QV_TEST_AGENT", nullptr);
}

AgentWorld::~AgentWorld() {
  for (const auto& [name, value] : former_)
    SetEnvironmentVariableW(name.c_str(), value.empty() ? nullptr : value.c_str());
}

void AgentWorld::SetVariable(const wchar_t* name, const wchar_t* value) {
  former_.try_emplace(name, EnvironmentValue(name));
  SetEnvironmentVariableW(name, value);
}

std::wstring AgentWorld::AddProgram(std::wstring_view name) const {
  std::wstring path = Concat(Programs(), L'\\', name);
  WriteBytes(path, TestAgentBytes());
  return path;
}

std::wstring AgentWorld::AddBatch(std::wstring_view name) const {
  std::wstring path = Concat(Programs(), L'\\', name);
  const std::wstring agent = In(L"agent.exe");
  WriteBytes(agent, TestAgentBytes());
  WriteBytes(path, "@\"" + ToUtf8(agent) + "\" %*\r\n");
  return path;
}

std::wstring AgentWorld::Log() const {
  return LogText().substr(logged_);
}

OwnCopy::OwnCopy() {
  std::filesystem::create_directories(std::filesystem::path(Path()).parent_path());
  WriteBytes(Path(), TestAgentBytes());
}

OwnCopy::~OwnCopy() {
  // A program that has just been ended is still held for a moment.
  std::error_code busy;
  EXPECT_TRUE(PumpUntil([&] {
    std::filesystem::remove_all(std::filesystem::path(OpenCodeDirectory()).parent_path(), busy);
    return !std::filesystem::exists(OpenCodeDirectory());
  }));
}

std::wstring OwnCopy::Path() {
  return OpenCodeDirectory() + L"\\v1\\opencode.exe";
}

bool PumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);)
      DispatchMessageW(&message);
  }
  return true;
}

const std::string& TestAgentBytes() {
  static const std::string bytes = ReadBytes(WindowsPath(QV_TEST_AGENT_FILE));
  return bytes;
}

}  // namespace qv
