#include "services/agent_config.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "services/claude_config.h"
#include "services/codex_config.h"

namespace qv {
namespace {

const std::string kToml = "[mcp_servers.qv-excel]\nurl = \"http://127.0.0.1:7878/mcp\"\n";
const std::string kJson =
    "\"qv-excel\": {\n      \"type\": \"http\",\n      \"url\": \"http://127.0.0.1:7878/mcp\",\n"
    "      \"disabled\": false\n    }";

struct Case {
  const char* what;
  std::string before;
  std::string after;
};

TEST(CodexConfig, OneEntryComesLastAndTheRestStays) {
  const std::string other = "[mcp_servers.other]\ncommand = \"npx\"\nargs = [\"-y\", \"x\"]\n";
  const Case cases[] = {
      {"no file", "", kToml},
      {"blank", " \r\n\t\n", kToml},
      {"settings only", "model = \"o4\"", "model = \"o4\"\n\n" + kToml},
      {"blanks at the end", "model = \"o4\" \t\r\n\r\n", "model = \"o4\"\n\n" + kToml},
      {"the entry alone", kToml, kToml},
      {"first", kToml + "\n# theirs\n" + other, "\n" + other.substr(0, other.size() - 1) + "\n\n" + kToml},
      {"in the middle", "a = 1\n" + kToml + "\n" + other,
       "a = 1\n" + other.substr(0, other.size() - 1) + "\n\n" + kToml},
      {"last, older", other + "\n[mcp_servers.qv-excel]\nurl = \"http://127.0.0.1:1/mcp\"\nx = 1\n",
       other.substr(0, other.size() - 1) + "\n\n" + kToml},
      {"twice in a row", kToml + kToml + "[b]\n", "\n[b]\n\n" + kToml},
      {"twice apart", kToml + "[b]\nc = 1\n" + kToml + "[d]\n", "\n[b]\nc = 1\n[d]\n\n" + kToml},
      {"a value with brackets goes whole",
       "[mcp_servers.qv-excel]\nargs = [\"-y\",\n  [\"n\"],\n]\nurl = \"u\"\n  [b]\n", "\n[b]\n\n" + kToml},
      {"line ends of the other kind",
       "a = 1\r\n[mcp_servers.qv-excel]\r\nurl = \"u\"\r\n\r\n[b]\r\nc = 2\r\n",
       "a = 1\r\n[b]\r\nc = 2\n\n" + kToml},
      {"a header spelled otherwise", "[ mcp_servers . \"qv-excel\" ] # old\nurl = 'u'\n", kToml},
      {"indented", "a = 1\n \t[mcp_servers.qv-excel]\nurl = \"u\"\n", "a = 1\n\n" + kToml},
      {"its subtable stays", "[mcp_servers.qv-excel.tools.range]\napproval_mode = \"approve\"\n",
       "[mcp_servers.qv-excel.tools.range]\napproval_mode = \"approve\"\n\n" + kToml},
      {"another server's environment stays", "[mcp_servers.other.env]\nK = \"v\"\n",
       "[mcp_servers.other.env]\nK = \"v\"\n\n" + kToml},
      {"a header inside a text is none",
       "notes = \"\"\"\n[mcp_servers.qv-excel]\n\\\"\"\"\"\"\nk = '''\n[x]'''\n",
       "notes = \"\"\"\n[mcp_servers.qv-excel]\n\\\"\"\"\"\"\nk = '''\n[x]'''\n\n" + kToml},
      {"a header in a comment is none", "# [mcp_servers.qv-excel]\na = 1 # [b]\n",
       "# [mcp_servers.qv-excel]\na = 1 # [b]\n\n" + kToml},
      {"a similar name", "[mcp_servers.qv-excel2]\nurl = \"u\"\n",
       "[mcp_servers.qv-excel2]\nurl = \"u\"\n\n" + kToml},
      {"bytes that are no UTF-8", "a = \"\xFF\xC3\"\n", "a = \"\xFF\xC3\"\n\n" + kToml},
  };
  for (const Case& c : cases) {
    const auto after = WithCodexEntry(c.before);
    ASSERT_TRUE(after) << c.what;
    EXPECT_EQ(*after, c.after) << c.what;
    EXPECT_TRUE(CodexPointsAtMcpServer(*after)) << c.what;
    // Once more, the comment ahead of the entry aside, changes nothing but a blank line at the top.
    EXPECT_TRUE(WithCodexEntry(*after)->ends_with(kToml)) << c.what;
  }
}

TEST(CodexConfig, WhatAnEntryWouldContradictIsLeftAlone) {
  for (const char* toml : {
           "mcp_servers = { qv-excel = { url = \"u\" } }",
           "mcp_servers.qv-excel.url = \"u\"",
           "[mcp_servers]\nqv-excel = { url = \"u\" }",
           "[mcp_servers]\n\"qv-excel\".url = \"u\"",
           "[[mcp_servers]]\na = 1",
           "[[mcp_servers.qv-excel]]\na = 1",
           "[mcp_servers.qv-excel]\ncommand = \"x\"\n[mcp_servers.qv-excel.env]\nK = \"v\"\n",
           "[mcp_servers.qv-excel.env]\nK = \"v\"\n[mcp_servers.qv-excel]\ncommand = \"x\"\n",
           "[mcp_servers.\"qv-excel\".env.deeper]\nK = \"v\"\n",
           "a = [1, 2",
           "a = \"open\nb = 1",
           "a = \"\"\"open",
           "[open\na = 1",
           "[a]]\n",
           "a = }\n",
           "a\n",
           "a =\n",
           "= 1\n",
           "a = 1\rb = 2\n[x] y",
       }) {
    EXPECT_FALSE(WithCodexEntry(toml)) << toml;
  }
}

TEST(CodexConfig, OnlyTheServersOwnAddressCountsAsConfigured) {
  const std::string head = "[mcp_servers.qv-excel]\n";
  for (const char* url : {"url = \"http://127.0.0.1:7878/mcp\"", "url='http://127.0.0.1:7878/mcp/'",
                          "args = [\"-y\"]\nurl = \"http://127.0.0.1:07878/mcp\" # here"})
    EXPECT_TRUE(CodexPointsAtMcpServer(head + url)) << url;
  for (const char* url :
       {"url = \"http://127.0.0.1:7879/mcp\"", "url = \"http://127.0.0.1:99999999999999999999/mcp\"",
        "url = \"http://127.0.0.1:/mcp\"", "url = \"https://127.0.0.1:7878/mcp\"",
        "url = \"http://127.0.0.1:7878/mcp/x\"", "url = \"http://localhost:7878/mcp\"",
        "# url = \"http://127.0.0.1:7878/mcp\"", "my_url = \"http://127.0.0.1:7878/mcp\"",
        "[other]\nurl = \"http://127.0.0.1:7878/mcp\"", "url = 7878", "url = \"", ""})
    EXPECT_FALSE(CodexPointsAtMcpServer(head + url)) << url;
}

TEST(ClaudeConfig, TheEntryIsPutIntoTheTopLevelServersAndTheRestStays) {
  const std::string alone = "{\n  \"mcpServers\": {\n    " + kJson + "\n  }\n}\n";
  const std::string member = "\n  \"mcpServers\": {\n    " + kJson + "\n  }";
  const Case cases[] = {
      {"no file", "", alone},
      {"blank", " \n", alone},
      {"an empty object", "{}", "{" + member + "\n}"},
      {"an empty object of two lines", "{\n}\n", "{" + member + "\n}\n"},
      {"other settings", "{\n  \"a\": [1, \"}\"]\n}\n", "{\n  \"a\": [1, \"}\"]," + member + "\n}\n"},
      {"on one line", "{\"a\":1}", "{\"a\":1," + member + "\n}"},
      {"no servers yet", "{\"mcpServers\":{}}", "{\"mcpServers\":{\n    " + kJson + "\n  }}"},
      {"no servers yet, on two lines", "{\"mcpServers\": {\n  }}",
       "{\"mcpServers\": {\n    " + kJson + "\n  }}"},
      {"servers are null", "{\"mcpServers\": null,\"b\":2}",
       "{\"mcpServers\": {\n    " + kJson + "\n  },\"b\":2}"},
      {"another server", "{\"mcpServers\": {\n    \"x\": {\"url\": \"u\"}\n  }\n}",
       "{\"mcpServers\": {\n    " + kJson + ",\n    \"x\": {\"url\": \"u\"}\n  }\n}"},
      {"an older entry", "{\"mcpServers\":{\"x\":{},\"qv-excel\" : {\"url\":\"u\"},\"y\":{}}}",
       "{\"mcpServers\":{\"x\":{}," + kJson + ",\"y\":{}}}"},
      {"an older entry with braces and brackets inside goes whole",
       "{\"mcpServers\":{\"qv-excel\":{\"headers\":{\"a\":\"}\"},\"args\":[[\"]\"]],\"url\":\"u\"}}}",
       "{\"mcpServers\":{" + kJson + "}}"},
      {"an entry that is no object", "{\"mcpServers\":{\"qv-excel\":null}}",
       "{\"mcpServers\":{" + kJson + "}}"},
      {"an entry with an escaped name", "{\"mcpServers\":{\"qv\\u002dexcel\":1}}",
       "{\"mcpServers\":{" + kJson + "}}"},
      {"servers of a project are not ours",
       "{\"projects\":{\"C:\\\\p\":{\"mcpServers\":{\"qv-excel\":{\"url\":\"u\"}}}},\"z\":0}",
       "{\"projects\":{\"C:\\\\p\":{\"mcpServers\":{\"qv-excel\":{\"url\":\"u\"}}}},\"z\":0," + member +
           "\n}"},
      {"the name as a text", "{\"a\":\"mcpServers\",\"b\":\"\\\"qv-excel\\\":{\"}",
       "{\"a\":\"mcpServers\",\"b\":\"\\\"qv-excel\\\":{\"," + member + "\n}"},
      {"of two, the one that counts", "{\"mcpServers\":{\"x\":1},\"mcpServers\":{}}",
       "{\"mcpServers\":{\"x\":1},\"mcpServers\":{\n    " + kJson + "\n  }}"},
      {"other line ends, letters and bytes", "{\r\n\t\"\xE4\xB8\xAD\": \"\xF0\x9F\x98\x80\xFF\"\r\n}\r\n",
       "{\r\n\t\"\xE4\xB8\xAD\": \"\xF0\x9F\x98\x80\xFF\"," + member + "\r\n}\r\n"},
  };
  for (const Case& c : cases) {
    const auto after = WithClaudeEntry(c.before);
    ASSERT_TRUE(after) << c.what;
    EXPECT_EQ(*after, c.after) << c.what;
    EXPECT_TRUE(ClaudePointsAtMcpServer(*after)) << c.what;
    EXPECT_EQ(WithClaudeEntry(*after), after) << c.what;
  }
}

TEST(ClaudeConfig, WhatIsNoJsonObjectIsLeftAlone) {
  for (const char* json : {
           "[]",
           "null",
           "{",
           "}",
           "{\"a\":1,}",
           "{\"a\":1}}",
           "{\"a\" 1}",
           "{a:1}",
           "{\"a\":[1,]}",
           "{\"a\":[}]}",
           "{\"a\":{\"b\"}}",
           "{\"a\":{\"b\":{]}}",
           "{\"a\":01}",
           "{\"a\":1.}",
           "{\"a\":1e}",
           "{\"a\":-}",
           "{\"a\":nul}",
           "{\"a\":\"\\x\"}",
           "{\"a\":\"\\u12g4\"}",
           "{\"a\":\"line\nend\"}",
           "{\"a\":\"open}",
           "{\"a\":1} // comment",
           "{\"mcpServers\":[]}",
           "{\"mcpServers\":\"x\"}",
           "{\"mcpServers\":{\"x\":}}",
       }) {
    EXPECT_FALSE(WithClaudeEntry(json)) << json;
    EXPECT_FALSE(ClaudePointsAtMcpServer(json)) << json;
  }
}

TEST(ClaudeConfig, OnlyTheServersOwnAddressCountsAsConfigured) {
  const auto with = [](const std::string& entry) {
    return ClaudePointsAtMcpServer("{\"mcpServers\":{\"qv-excel\":" + entry + "}}");
  };
  EXPECT_TRUE(with("{\"headers\":{\"x\":[{}]},\"url\":\"http:\\/\\/127.0.0.1:7878/mcp/\"}"));
  EXPECT_FALSE(with("{\"url\":\"http://127.0.0.1:7879/mcp\"}"));
  EXPECT_FALSE(with("{\"x\":{\"url\":\"http://127.0.0.1:7878/mcp\"}}"));
  EXPECT_FALSE(with("\"http://127.0.0.1:7878/mcp\""));
  EXPECT_FALSE(ClaudePointsAtMcpServer(
      "{\"projects\":{\"mcpServers\":{\"qv-excel\":{\"url\":\"http://127.0.0.1:7878/mcp\"}}}}"));
}

TEST(AgentConfig, AByteOrderMarkStaysAndOtherEncodingsAreLeftAlone) {
  const std::string mark = "\xEF\xBB\xBF";
  EXPECT_EQ(WithMcpEntry(AgentKind::kCodex, mark + kToml), mark + kToml);
  EXPECT_EQ(WithMcpEntry(AgentKind::kCodex, mark), mark + kToml);
  EXPECT_TRUE(WithMcpEntry(AgentKind::kClaude, mark + "{}")->starts_with(mark + "{\n"));
  EXPECT_TRUE(PointsAtMcpServer(AgentKind::kCodex, mark + kToml));
  EXPECT_TRUE(WithMcpEntry(AgentKind::kClaude, "{\"a\":\"\xF0\x9F\x98\x80\xEF\xBF\xBD\"}"));
  EXPECT_TRUE(WithMcpEntry(AgentKind::kCodex, "a = \"\xE4\xB8\xAD\" # \xC3\xBC\n"));
  // A stray byte, a cut, an overlong and a surrogate sequence, one that is beyond Unicode, zero bytes.
  for (const std::string& bytes :
       {std::string("\xFF"), std::string("\xC3"), std::string("\xC0\xAF"), std::string("\xED\xA0\x80"),
        std::string("\xF4\x90\x80\x80"), std::string("\0", 1)}) {
    EXPECT_FALSE(WithMcpEntry(AgentKind::kCodex, "a = 1 # " + bytes + "\n")) << bytes;
    EXPECT_FALSE(WithMcpEntry(AgentKind::kClaude, "{\"a\":\"" + bytes + "\"}")) << bytes;
  }
  for (const AgentKind kind : {AgentKind::kCodex, AgentKind::kClaude})
    EXPECT_FALSE(WithMcpEntry(kind, std::string("\xFF\xFE{\0}\0", 6)));
}

TEST(AgentConfig, TenMegabytesAndDeepNestingNeedNoStack) {
  constexpr std::size_t kSize = 10'000'000;
  const std::string deep = std::string(kSize / 2, '[') + std::string(kSize / 2, ']');
  EXPECT_TRUE(WithClaudeEntry("{\"a\":" + deep + "}"));
  EXPECT_FALSE(WithCodexEntry("a = " + deep.substr(1)));
}

TEST(AgentConfig, ManyPartsTakeTimeInProportion) {
  constexpr std::size_t kSize = 1'000'000;
  EXPECT_FALSE(WithClaudeEntry("{\"a\":\"" + std::string(kSize, '\\')));
  std::string lines;
  while (lines.size() < kSize)
    lines += "[mcp_servers.qv-excel]\nurl = \"u\"\n[t]\nk = [\"\"]\n";
  EXPECT_EQ(WithCodexEntry(lines)->find("qv-excel"), WithCodexEntry(lines)->rfind("qv-excel"));
  std::string members = "{\"mcpServers\":{\"qv-excel\":{}}";
  while (members.size() < kSize)
    members += ",\"mcpServers \":{\"qv-excel\":\"\\u0000\"}";
  EXPECT_TRUE(ClaudePointsAtMcpServer(*WithClaudeEntry(members + "}")));
}

/// Texts made of the pieces on which the scanners decide; the same on every run.
std::string Jumble(std::mt19937& random, std::span<const char* const> pieces) {
  std::string text;
  for (auto length = random() % 16; length > 0; --length)
    text += pieces[random() % pieces.size()];
  return text;
}

/// Whether `after` is `before` with one piece put in.
bool IsAddition(std::string_view before, std::string_view after) {
  const auto head = static_cast<std::size_t>(std::ranges::mismatch(before, after).in1 - before.begin());
  return after.size() > before.size() && after.ends_with(before.substr(head));
}

TEST(AgentConfig, WhateverStandsInAFileOnlyItsEntryChanges) {
  constexpr const char* kTomlPieces[] = {"[mcp_servers.qv-excel]\n",
                                         "[a]\n",
                                         "\n",
                                         "k",
                                         " = ",
                                         "1\n",
                                         "\"",
                                         "\"\"\"",
                                         "'",
                                         "[",
                                         "]",
                                         "{",
                                         "}",
                                         "#",
                                         "\\",
                                         ".",
                                         "\r\n",
                                         "[[b]]\n",
                                         "url = \"u\"\n",
                                         " ",
                                         "qv-excel"};
  constexpr const char* kJsonPieces[] = {"{",
                                         "}",
                                         "[",
                                         "]",
                                         ":",
                                         ",",
                                         "\"",
                                         "\"mcpServers\":",
                                         "{\"qv-excel\":",
                                         "\"a\"",
                                         "1",
                                         "null",
                                         "\\",
                                         " ",
                                         "\n",
                                         "\"qv-excel\":{}"};
  std::mt19937 random(20260301);
  int rewritten = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::string toml = Jumble(random, kTomlPieces);
    if (const auto after = WithCodexEntry(toml)) {
      ++rewritten;
      EXPECT_TRUE(after->ends_with(kToml)) << toml;
      EXPECT_TRUE(CodexPointsAtMcpServer(*after)) << toml;
      // Without a section of ours the text stays but for blanks at its end.
      const std::string kept = after->substr(0, after->size() - kToml.size());
      const std::string_view trimmed(kept.data(), kept.find_last_not_of('\n') + 1);
      EXPECT_TRUE(toml.find("qv-excel]") != std::string::npos || toml.starts_with(trimmed)) << toml;
    }
    const std::string json = (i % 2 == 0 ? "{\"mcpServers\":" : "{") + Jumble(random, kJsonPieces);
    if (const auto after = WithClaudeEntry(json)) {
      ++rewritten;
      EXPECT_TRUE(ClaudePointsAtMcpServer(*after)) << json;
      EXPECT_EQ(WithClaudeEntry(*after), after) << json;
      const bool isAddition =
          json.find("qv-excel") == std::string::npos && json.find("null") == std::string::npos;
      EXPECT_TRUE(!isAddition || IsAddition(json, *after)) << json << "\n->\n" << *after;
    }
  }
  EXPECT_GT(rewritten, 1000);
}

}  // namespace
}  // namespace qv
