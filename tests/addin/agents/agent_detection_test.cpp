#include "services/agent_detection.h"

#include <windows.h>

#include <chrono>

#include "agent_world.h"
#include "foundation/text.h"
#include "services/agent_places.h"
#include "services/child_process.h"
#include "services/find_executable.h"
#include "services/named_lock.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

using AgentDetection = AgentWorld;

std::chrono::milliseconds Since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
}

TEST_F(AgentDetection, ProgramsAreFoundByExtensionBeforeFolder) {
  EXPECT_EQ(FindExecutable(L"tool"), L"");
  fs::create_directories(In(L"second"));
  SetVariable(L"PATH", Programs() + L";" + In(L"second"));
  WriteBytes(Programs() + L"\\tool.ps1", "");
  EXPECT_EQ(FindExecutable(L"tool"), Programs() + L"\\tool.ps1");
  WriteBytes(Programs() + L"\\tool.bat", "");
  EXPECT_EQ(FindExecutable(L"tool"), Programs() + L"\\tool.bat");
  WriteBytes(In(L"second\\tool.cmd"), "");
  EXPECT_EQ(FindExecutable(L"tool"), In(L"second\\tool.cmd"));
  fs::create_directories(Programs() + L"\\tool.exe");
  EXPECT_EQ(FindExecutable(L"tool"), In(L"second\\tool.cmd"));
  EXPECT_EQ(FindExecutable(L"tool.bat"), Programs() + L"\\tool.bat");
  EXPECT_EQ(FindExecutable(L"tool.exe"), L"");
  // A file of that name without an extension is a script for other systems.
  WriteBytes(Programs() + L"\\other", "");
  EXPECT_EQ(FindExecutable(L"other"), L"");
}

TEST_F(AgentDetection, ProgramsOfTheCurrentFolderAreNotTaken) {
  WriteBytes(In(L"planted.exe"), "");
  const fs::path former = fs::current_path();
  fs::current_path(In(L""));
  EXPECT_EQ(FindExecutable(L"planted"), L"");
  fs::current_path(former);
}

TEST_F(AgentDetection, APathOf260CharactersCountsAsNotFound) {
  const std::wstring folder = Concat(L"\\\\?\\", Programs(), L'\\', std::wstring(100, L'd'));
  const auto nameOf = [&](std::size_t length) {
    return std::wstring(length - (folder.size() - 4) - 1 - 4, L'x');
  };
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  for (const std::size_t length : {259U, 260U})
    WriteBytes(Concat(folder, L'\\', nameOf(length), L".exe"), "");
  SetVariable(L"PATH", folder.substr(4));
  EXPECT_EQ(FindExecutable(nameOf(259)).size(), 259U);
  EXPECT_EQ(FindExecutable(nameOf(260)), L"");
}

TEST_F(AgentDetection, AVersionIsReadFromProgramsAndScripts) {
  EXPECT_EQ(GetAgentVersion(AddProgram(L"a b \u4E2D.exe")), L"9.8.7 (Test Agent)");
  EXPECT_EQ(GetAgentVersion(AddBatch(L"a b.cmd")), L"9.8.7 (Test Agent)");
  EXPECT_EQ(GetAgentVersion(Programs() + L"\\none.exe"), L"");
}

TEST_F(AgentDetection, ProgramsDoNotRunInTheHostsCurrentFolder) {
  const std::wstring script = In(L"where.cmd");
  WriteBytes(script, "@cd\r\n");
  const std::wstring folder = GetAgentVersion(script);
  EXPECT_TRUE(EqualsIgnoreAsciiCase(folder, SystemDirectory())) << ToUtf8(folder);
}

TEST_F(AgentDetection, ProgramsStartNothingFromTheirCurrentFolder) {
  const std::wstring script = In(L"where.cmd");
  WriteBytes(script, "@echo %NoDefaultCurrentDirectoryInExePath% %QV_TEST_OWN%\r\n");
  SetVariable(L"QV_TEST_OWN", L"and the user's own");
  EXPECT_EQ(GetAgentVersion(script), L"1 and the user's own");
}

TEST_F(AgentDetection, OutputOfAnySizeIsTakenAndAChildThatHoldsThePipeIsNotWaitedFor) {
  const std::wstring program = AddProgram(L"agent.exe");
  for (const wchar_t* manner : {L"flood", L"child"}) {
    SetVariable(L"QV_TEST_AGENT", manner);
    const ChildRun run =
        RunCaptured(program, L"\"" + program + L"\" --version", {.time = std::chrono::seconds(30)});
    EXPECT_TRUE(run.Succeeded()) << ToUtf8(manner);
    EXPECT_TRUE(run.output.starts_with("9.8.7 (Test Agent)\r\n")) << ToUtf8(manner);
    EXPECT_EQ(run.output.size(), manner[0] == L'f' ? 65'536U : 33U);
  }
}

TEST_F(AgentDetection, AProgramThatHangsIsEndedAfterFiveSecondsAndSaysWhatItSaid) {
  const std::wstring program = AddProgram(L"agent.exe");
  SetVariable(L"QV_TEST_AGENT", L"hang");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(GetAgentVersion(program), L"0.1 (stopped");
  EXPECT_GE(Since(start), std::chrono::milliseconds(4900));
  // A file whose program still ran could not be deleted.
  EXPECT_TRUE(PumpUntil([&] { return DeleteFileW(program.c_str()) != FALSE; }));
}

TEST_F(AgentDetection, EveryAgentIsReportedInOrder) {
  AddBatch(L"claude.cmd");
  AddProgram(L"codex.exe");
  fs::create_directories(Profile() + L"\\.codex");
  WriteBytes(Profile() + L"\\.codex\\config.toml",
             "[mcp_servers.qv-excel]\nurl = \"http://127.0.0.1:7878/mcp\"\n");
  const std::vector<AgentInfo> agents = DetectAgents();
  ASSERT_EQ(agents.size(), 3U);
  EXPECT_EQ(agents[0].id, L"opencode");
  EXPECT_EQ(agents[0].configPath, Profile() + L"\\Quorvantis\\opencode-workspace\\opencode.json");
  EXPECT_FALSE(agents[0].installed || agents[0].bundled || agents[0].mcpConfigured);
  EXPECT_TRUE(agents[0].installable);
  EXPECT_EQ(agents[1].path, Programs() + L"\\claude.cmd");
  EXPECT_EQ(agents[1].version, L"9.8.7 (Test Agent)");
  EXPECT_TRUE(agents[1].installed);
  EXPECT_FALSE(agents[1].mcpConfigured || agents[1].installable);
  EXPECT_EQ(agents[2].version, L"9.8.7 (Test Agent)");
  EXPECT_TRUE(agents[2].mcpConfigured);
}

TEST_F(AgentDetection, OpenCodesOwnCopyGoesAheadOfThePath) {
  AddProgram(L"opencode.exe");
  EXPECT_EQ(AgentExecutable(AgentKind::kOpenCode), Programs() + L"\\opencode.exe");
  const OwnCopy own;
  const AgentInfo agent = DetectAgents()[0];
  EXPECT_EQ(agent.path, own.Path());
  EXPECT_EQ(agent.version, L"9.8.7 (Test Agent)");
  EXPECT_TRUE(agent.bundled);
}

TEST_F(AgentDetection, AnOwnCopyThatIsBeingReplacedIsNotRun) {
  const OwnCopy own;
  AddProgram(L"codex.exe");
  const NamedLock installation(kOwnCopyLock, std::chrono::milliseconds(0));
  ASSERT_TRUE(installation);
  const std::vector<AgentInfo> agents = DetectAgents();
  EXPECT_EQ(agents[0].path, own.Path());
  EXPECT_EQ(agents[0].version, L"");
  EXPECT_EQ(agents[2].version, L"9.8.7 (Test Agent)");
}

}  // namespace
}  // namespace qv
