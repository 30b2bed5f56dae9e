#include "services/mcp_json_rpc.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "foundation/text.h"
#include "services/mcp_answers.h"
#include "services/mcp_contract.h"

namespace qv {
namespace {

/// What stands in a golden file, without the line end.
std::string Golden(const std::string& name) {
  std::ifstream file(QV_GOLDEN_FOLDER "/" + name, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

std::string Ask(std::string method, std::string path, std::string body, const McpDispatch& dispatch) {
  ListenerRequest request;
  request.method = std::move(method);
  request.path = std::move(path);
  request.body = std::move(body);
  return HandleMcpRequest(request, dispatch);
}

/// A dispatcher that keeps its calls and answers each with the same text.
struct Calls {
  McpDispatch Dispatch() {
    return [this](const std::wstring& action, const std::wstring& json) {
      seen.push_back(action + L" " + json);
      return result;
    };
  }
  std::wstring result = L"{}";
  std::vector<std::wstring> seen;
};

std::wstring MethodNotFound(const std::wstring& id) {
  return L"{\"jsonrpc\":\"2.0\",\"id\":" + id +
         L",\"error\":{\"code\":-32601,\"message\":\"method not found\"}}";
}

std::wstring Unknown(const std::wstring& what) {
  return L"{\"jsonrpc\":\"2.0\",\"id\":1,\"error\":{\"code\":-32601,\"message\":\"unknown tool or action: " +
         what + L"\"}}";
}

TEST(McpContract, IsTheOneThatAgentsWereToldByteForByte) {
  EXPECT_EQ(ToUtf8(HandleJsonRpc(LR"({"method":"initialize","params":{"protocolVersion":"x"},"id":7})", {})),
            Golden("mcp_initialize.json"));
  EXPECT_EQ(ToUtf8(HandleJsonRpc(LR"({"id":8,"method":"tools/list"})", {})), Golden("mcp_tools_list.json"));
}

TEST(McpContract, EveryActionOfTheSchemasReachesItsWorkbookAction) {
  struct Case {
    const wchar_t* tool;
    const wchar_t* action;
    const wchar_t* workbookAction;
  };
  const Case cases[] = {
      {L"range", L"read", L"excelReadRange"},
      {L"range", L"write", L"excelWriteRange"},
      {L"range", L"format", L"excelFormatRange"},
      {L"worksheet", L"list", L"excelListSheets"},
      {L"worksheet", L"set_active", L"excelSetActiveSheet"},
      {L"worksheet", L"add", L"excelAddSheet"},
      {L"worksheet", L"delete", L"excelDeleteSheet"},
      {L"worksheet", L"rename", L"excelRenameSheet"},
      {L"worksheet", L"merge", L"excelMergeCells"},
      {L"worksheet", L"unmerge", L"excelUnmergeCells"},
      {L"worksheet", L"set_size", L"excelSetSize"},
      {L"worksheet", L"delete_rows_cols", L"excelDeleteRowsCols"},
      {L"worksheet", L"insert_rows_cols", L"excelInsertRowsCols"},
      {L"worksheet", L"remove_duplicates", L"excelRemoveDuplicates"},
      {L"chart", L"create", L"excelChartCreate"},
      {L"calc", L"set_mode", L"excelCalcSetMode"},
      {L"calc", L"calculate_now", L"excelCalculateNow"},
      {L"calc", L"get_mode", L"excelCalcGetMode"},
      {L"screenshot", L"range", L"excelScreenshotRange"},
  };
  for (const Case& each : cases) {
    Calls calls;
    const std::wstring arguments = Concat(L"{ \"action\":\"", each.action, L"\", \"x\":[1 ] }");
    const std::wstring answer =
        HandleJsonRpc(Concat(L"{\"params\":{\"arguments\":", arguments, L",\"name\":\"", each.tool,
                             L"\"},\"method\":\"tools/call\",\"jsonrpc\":\"2.0\",\"id\":3}"),
                      calls.Dispatch());
    EXPECT_EQ(answer, LR"({"jsonrpc":"2.0","id":3,"result":{"content":[{"type":"text","text":"{}"}]}})");
    EXPECT_EQ(calls.seen, std::vector{Concat(each.workbookAction, L' ', arguments)});
  }
}

TEST(McpJsonRpc, IdsAreEchoedAsNumbersAndEveryMessageIsAnswered) {
  struct Case {
    const wchar_t* message;
    const wchar_t* id;
  };
  const Case cases[] = {
      {LR"({"id":7,"method":"x"})", L"7"},
      {LR"({"id" : -12 ,"method":"x"})", L"-12"},
      {LR"({"id":"abc","method":"x"})", L"0"},
      {LR"({"id":"7","method":"x"})", L"0"},
      {LR"({"id":null,"method":"x"})", L"0"},
      {LR"({"id":1732244595123,"method":"x"})", L"1732244595123"},
      {LR"({"id":9223372036854775807,"method":"x"})", L"9223372036854775807"},
      {LR"({"id":99999999999999999999,"method":"x"})", L"9223372036854775807"},
      {LR"({"id":-99999999999999999999,"method":"x"})", L"-9223372036854775808"},
      {LR"({"id":2.5,"method":"x"})", L"2"},
      {LR"({"jsonrpc":"2.0","method":"notifications/initialized"})", L"0"},
      // An id or a method inside of a value is not the message's.
      {LR"({"method":"x","params":{"id":5,"a":["id",6]},"id":4})", L"4"},
      {LR"({"params":{"method":"tools/list","a":"\"method\":\"tools/list\""},"method":"x","id":2})", L"2"},
      {LR"({"method":"notifications/cancelled","params":{"id":5,"reason":"\"id\":6"}})", L"0"},
      {LR"({"id":3,"params":{"method":"tools/list"}})", L"3"},
      {L"\xFEFF"
       LR"({"method":"x","params":{"id":5},"id":4})",
       L"4"},
      {L"\xFEFF"
       LR"({"method":"x","params":{"id":5}})",
       L"0"},
      {L"", L"0"},
      {L"[]", L"0"},
      {L"no JSON", L"0"},
      // Not closed: what can be found counts.
      {LR"({"id":9,"method":"Initialize")", L"9"},
  };
  for (const Case& each : cases)
    EXPECT_EQ(HandleJsonRpc(each.message, {}), MethodNotFound(each.id)) << ToUtf8(each.message);
}

TEST(McpJsonRpc, OnlyAKnownPairOfToolAndActionIsCalled) {
  struct Case {
    const wchar_t* parameters;
    const wchar_t* answer;
  };
  const Case cases[] = {
      {LR"({"name":"screenshot","arguments":{"action":"read"}})", L"screenshot/read"},
      {LR"({"name":"range"})", L"range/"},
      {LR"({"name":"range","arguments":null})", L"range/"},
      {LR"({"name":"range","arguments":"{\"action\":\"read\"}"})", L"range/"},
      {LR"({"name":"Range","arguments":{"action":"read"}})", L"Range/read"},
      {LR"({"name":"range","arguments":{"action":"READ"}})", L"range/READ"},
      {LR"({"name":"a\"\n","arguments":{"action":"\\"}})", LR"(a\"\n/\\)"},
      // The action is the argument's own, not that of a cell.
      {LR"({"name":"range","arguments":{"values":[{"action":"read"}],"action":"erase"}})", L"range/erase"},
      {LR"({"name":"range","arguments":{"values":[{"action":"read"}]}})", L"range/"},
      {LR"({"arguments":{"action":"list","name":"worksheet"},"name":"sheet"})", L"sheet/list"},
      {LR"({"arguments":{"action":"list","name":"worksheet"}})", L"/list"},
      {LR"({"name":"range","meta":{"arguments":{"action":"read"}}})", L"range/"},
      {L"[]", L"/"},
      {L"7", L"/"},
  };
  for (const Case& each : cases) {
    Calls calls;
    EXPECT_EQ(HandleJsonRpc(Concat(LR"({"id":1,"method":"tools/call","params":)", each.parameters, L'}'),
                            calls.Dispatch()),
              Unknown(each.answer));
    EXPECT_TRUE(calls.seen.empty());
  }
}

TEST(McpJsonRpc, AToolsResultIsTextWhateverItSays) {
  Calls calls;
  calls.result = L"{\"error\":\"\u65E0 \\\"x\\\"\t\xD800\"}";
  const std::string body =
      R"({"id":1,"method":"tools/call","params":{"name":"worksheet","arguments":{"action":"list"}}})";
  EXPECT_EQ(Ask("POST", "/mcp", body, calls.Dispatch()),
            "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{\"content\":[{\"type\":\"text\",\"text\":"
            "\"{\\\"error\\\":\\\"\xE6\x97\xA0 \\\\\\\"x\\\\\\\"\\t\xEF\xBF\xBD\\\"}\"}]}}");
  EXPECT_EQ(Ask("POST", "/mcp", body, {}),
            R"({"jsonrpc":"2.0","id":1,"error":{"code":-32603,"message":"no dispatcher"}})");
}

TEST(McpJsonRpc, ACallThatIsNotClosedStillFindsItsWholeParameters) {
  Calls calls;
  static_cast<void>(HandleJsonRpc(
      LR"({"id":1,"method":"tools/call","params": {"name":"calc","arguments":{"action":"get_mode"}})",
      calls.Dispatch()));
  EXPECT_EQ(calls.seen, std::vector<std::wstring>{LR"(excelCalcGetMode {"action":"get_mode"})"});
}

TEST(McpHttp, ThePathDecidesWhatAnswers) {
  struct Case {
    const char* method;
    const char* path;
    std::string answer;
  };
  const std::string notFound = ToUtf8(MethodNotFound(L"0"));
  const Case cases[] = {
      {"OPTIONS", "/mcp", "{}"},
      {"OPTIONS", "/yield", "{}"},
      {"OPTIONS", "", "{}"},
      {"GET", "/mcp", notFound},
      {"OTHER", "/mcp/?a=b", notFound},
      {"POST", "/excel/mcp", notFound},
      {"POST", "/x?y=/mcp", notFound},
      {"POST", "/yield?now", R"({"error":"not found"})"},
      {"POST", "/MCP", R"({"error":"not found"})"},
      {"GET", "/", R"({"error":"not found"})"},
  };
  for (const Case& each : cases)
    EXPECT_EQ(Ask(each.method, each.path, "", {}), each.answer) << each.path;
}

TEST(McpJsonRpc, HostileTextsCostNoMoreThanTheirLength) {
  constexpr std::size_t kSize = 2'000'000;
  const auto repeated = [](std::wstring_view part) {
    std::wstring text;
    while (text.size() < kSize)
      text += part;
    return text;
  };
  const std::wstring texts[] = {
      LR"({"id":1,"method":"x","params":)" + std::wstring(kSize, L'[') + std::wstring(kSize, L']') + L'}',
      LR"({"id":1,"method":"x","params":)" + std::wstring(kSize, L'['),
      LR"({"id":1,"method":"x","params":)" + repeated(LR"({"params")"),
      LR"({"id":1,"method":"x",)" + repeated(LR"("params" )") + L'}',
      LR"({"id":1,"method":"x","params":")" + std::wstring(kSize, L'\\') + L'}',
  };
  for (const std::wstring& text : texts)
    EXPECT_EQ(HandleJsonRpc(text, {}), MethodNotFound(L"1"));
  Calls calls;
  const std::wstring big = LR"({"action":"write","values":[")" + std::wstring(kSize, L'\u4E2D') + L"\"]}";
  static_cast<void>(HandleJsonRpc(
      Concat(LR"({"id":1,"method":"tools/call","params":{"name":"range","arguments":)", big, L"}}"),
      calls.Dispatch()));
  EXPECT_EQ(calls.seen, std::vector{L"excelWriteRange " + big});
}

TEST(McpAnswers, SayWhoHasThePort) {
  EXPECT_EQ(McpStatusAnswer(McpOwner::kSelf), LR"({"ok":true,"owner":"self","running":true,"port":7878})");
  EXPECT_EQ(McpStatusAnswer(McpOwner::kOther), LR"({"ok":true,"owner":"other","running":false,"port":7878})");
  EXPECT_EQ(McpStatusAnswer(McpOwner::kNone), LR"({"ok":true,"owner":"none","running":false,"port":7878})");
  EXPECT_EQ(McpStartAnswer(McpOwner::kSelf),
            LR"({"ok":true,"owner":"self","running":true,"mode":"external","port":7878})");
  EXPECT_EQ(McpStartAnswer(McpOwner::kOther),
            L"{\"ok\":false,\"owner\":\"other\",\"running\":false,\"error\":\"端口已被其他表格占用\"}");
  EXPECT_EQ(McpStartAnswer(McpOwner::kNone),
            L"{\"ok\":false,\"owner\":\"none\",\"running\":false,\"error\":\"MCP server 启动失败\"}");
  EXPECT_EQ(McpStopAnswer(), LR"({"ok":true,"owner":"none","running":false,"port":7878})");
}

}  // namespace
}  // namespace qv
