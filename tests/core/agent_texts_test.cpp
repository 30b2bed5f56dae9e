#include <gtest/gtest.h>

#include <algorithm>

#include "foundation/text.h"
#include "services/agent_answers.h"
#include "services/agent_command.h"
#include "services/agent_kinds.h"
#include "services/opencode_config.h"

namespace qv {
namespace {

TEST(AgentKinds, AreKnownByTheirExactIdInTheReportedOrder) {
  std::wstring ids;
  for (const AgentKindRow& row : AgentKinds())
    ids += std::wstring(row.id) + L" ";
  EXPECT_EQ(ids, L"opencode claude codex ");
  EXPECT_EQ(AgentKindOf(L"codex"), AgentKind::kCodex);
  for (const wchar_t* id : {L"", L"Codex", L"codex ", L"gemini"})
    EXPECT_EQ(AgentKindOf(id), std::nullopt);
}

TEST(AgentKinds, ADirectoryGetsABackslashWhereItLacksOne) {
  EXPECT_EQ(PathIn(L"C:\\w", L"opencode.json"), L"C:\\w\\opencode.json");
  EXPECT_EQ(PathIn(L"C:\\w\\", L"opencode.json"), L"C:\\w\\opencode.json");
  EXPECT_EQ(PathIn(L"C:/w/", L"opencode.json"), L"C:/w/opencode.json");
  EXPECT_EQ(PathIn(L"C:", L"opencode.json"), L"C:opencode.json");
}

TEST(AgentAnswers, HaveTheirMembersInOrderAndEscaped) {
  AgentInfo agent{L"opencode", L"OpenCode (Quorvantis)",
                  L"opencode", L"C:\\\u4E2D \"x\"\\o.exe",
                  L"1.2",      true,
                  true,        true,
                  false,       L"C:\\c"};
  EXPECT_EQ(AgentListJson({agent, {}}),
            L"{\"agents\":[{\"id\":\"opencode\",\"name\":\"OpenCode (Quorvantis)\",\"command\":\"opencode\","
            L"\"path\":\"C:\\\\\u4E2D \\\"x\\\"\\\\o.exe\",\"version\":\"1.2\",\"installed\":true,"
            L"\"bundled\":true,\"installable\":true,\"mcpConfigured\":false,\"configPath\":\"C:\\\\c\"},"
            L"{\"id\":\"\",\"name\":\"\",\"command\":\"\",\"path\":\"\",\"version\":\"\",\"installed\":false,"
            L"\"bundled\":false,\"installable\":false,\"mcpConfigured\":false,\"configPath\":\"\"}]}");
  EXPECT_EQ(ConfigureJson({true, L"C:\\a", L"C:\\a.backup.1", {}}),
            L"{\"success\":true,\"configPath\":\"C:\\\\a\",\"backupPath\":\"C:\\\\a.backup.1\"}");
  EXPECT_EQ(ConfigureJson({false, L"C:\\a", {}, L"x\"y"}),
            L"{\"success\":false,\"configPath\":\"C:\\\\a\",\"error\":\"x\\\"y\"}");
  EXPECT_EQ(InstallJson({true, L"C:\\o.exe", L"1.0", {}}),
            L"{\"success\":true,\"exePath\":\"C:\\\\o.exe\",\"version\":\"1.0\"}");
  EXPECT_EQ(InstallJson({false, {}, {}, L"no"}), L"{\"success\":false,\"exePath\":\"\",\"error\":\"no\"}");
  EXPECT_EQ(OutcomeJson(kUnknownAgentError), L"{\"success\":false,\"error\":\"未找到该 Agent\"}");
  EXPECT_EQ(OutcomeJson({}), L"{\"success\":true}");
}

TEST(AgentCommand, EachSortOfProgramIsRunByWhatRunsIt) {
  const Interpreters with{L"C:\\W\\cmd.exe", L"C:\\W\\S"};
  EXPECT_EQ(ProgramCommandLine(with, L"C:\\a b\\c.exe", L"--version"), L"\"C:\\a b\\c.exe\" --version");
  EXPECT_EQ(ProgramCommandLine(with, L"C:\\a b\\c.CMD", L"--version"),
            L"\"C:\\W\\cmd.exe\" /d /s /c \"\"C:\\a b\\c.CMD\" --version\"");
  EXPECT_EQ(ProgramCommandLine(with, L"C:\\c.ps1", L"--version"),
            L"\"C:\\W\\S\\WindowsPowerShell\\v1.0\\powershell.exe\" -NoProfile -ExecutionPolicy Bypass "
            L"-File \"C:\\c.ps1\" --version");
  EXPECT_EQ(ConsoleArguments(with, L"C:\\a b\\c.exe"),
            L"/d /s /c \"\"C:\\a b\\c.exe\" & if errorlevel 1 pause\"");
  EXPECT_EQ(ConsoleArguments(with, L"C:\\c.bat"), L"/d /s /c \"call \"C:\\c.bat\" & if errorlevel 1 pause\"");
  EXPECT_TRUE(IsPlainProgram(L"C:\\a.exe"));
  EXPECT_FALSE(IsPlainProgram(L"C:\\a.bat"));
  EXPECT_FALSE(IsPlainProgram(L"C:\\a.PS1"));
}

TEST(AgentCommand, VariablesReplaceThoseOfTheSameName) {
  const std::wstring_view block(L"=C:=C:\\x\0Path=a\0openai_api_key=old\0A=1\0\0", 41);
  const std::wstring_view expected(L"=C:=C:\\x\0Path=a\0A=1\0OPENAI_API_KEY=k=\0N=\0\0", 42);
  EXPECT_EQ(WithEnvironment(block, {{L"OPENAI_API_KEY", L"k="}, {L"N", L""}}), expected);
  EXPECT_EQ(WithEnvironment({}, {}), std::wstring(1, L'\0'));
}

TEST(AgentCommand, AVersionIsTheFirstLine) {
  EXPECT_EQ(FirstLine("1.0.3 (Claude Code)\r\nmore\r\n"), L"1.0.3 (Claude Code)");
  EXPECT_EQ(FirstLine(" 2.0\n\nmore"), L"2.0");
  EXPECT_EQ(FirstLine("\xE4\xB8\xAD"), L"\u4E2D");
  EXPECT_EQ(FirstLine(""), L"");
}

TEST(AgentCommand, APackageComesFromTheRequestTheSettingsOrTheBuild) {
  const wchar_t* const settings = L"{\"opencodePackage\":\"file:///C:/p.zip\"}";
  EXPECT_EQ(PackageLocation(L"http://x/p.zip", settings, L"b"), L"http://x/p.zip");
  EXPECT_EQ(PackageLocation(L"", settings, L"b"), L"file:///C:/p.zip");
  EXPECT_EQ(PackageLocation(L"", L"{}", L"b"), L"b");
}

TEST(OpenCodeConfig, NamesModelProxyToolServerAndPermissions) {
  const std::wstring text = OpenCodeConfig({L"http://127.0.0.1:7999/v1", L"qv_\"k\\"});
  EXPECT_EQ(
      text,
      L"{\n  \"$schema\": \"https://opencode.ai/config.json\",\n"
      L"  \"model\": \"quorvantis/deepseek-v4-flash\",\n  \"provider\": {\n    \"quorvantis\": {\n"
      L"      \"name\": \"Quorvantis\",\n      \"module\": \"npm:@ai-sdk/openai-compatible\",\n"
      L"      \"options\": {\n        \"baseURL\": \"http://127.0.0.1:7999/v1\",\n"
      L"        \"apiKey\": \"qv_\\\"k\\\\\"\n      },\n      \"models\": {\n"
      L"        \"deepseek-v4-flash\": { \"name\": \"DeepSeek V4 Flash\" }\n      }\n    }\n  },\n"
      L"  \"mcp\": {\n    \"qv-excel\": {\n      \"type\": \"remote\",\n"
      L"      \"url\": \"http://127.0.0.1:7878/mcp\",\n      \"enabled\": true\n    }\n  },\n"
      L"  \"permission\": {\n    \"edit\": \"ask\",\n    \"bash\": \"ask\",\n    \"webfetch\": \"deny\"\n"
      L"  }\n}\n");
  EXPECT_TRUE(OpenCodePointsAtMcpServer(ToUtf8(text)));
  EXPECT_TRUE(Contains(OpenCodeConfig({}), L"\"baseURL\": \"http://127.0.0.1:7879/v1\""));
  EXPECT_FALSE(OpenCodePointsAtMcpServer("{\"mcp\":{}}"));
}

TEST(OpenCodeConfig, TheEnvironmentNamesKeyModelProxyAndFile) {
  const EnvironmentVariables expected = {{L"OPENAI_API_KEY", L"qv_1"},
                                         {L"OPENCODE_MODEL", L"quorvantis/deepseek-v4-flash"},
                                         {L"OPENAI_BASE_URL", L"http://127.0.0.1:7879/v1"},
                                         {L"OPENCODE_CONFIG", L"C:\\w\\opencode.json"}};
  EXPECT_EQ(OpenCodeEnvironment({{}, L"qv_1"}, L"C:\\w\\opencode.json"), expected);
}

}  // namespace
}  // namespace qv
