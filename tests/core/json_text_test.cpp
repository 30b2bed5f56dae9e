#include "foundation/json_text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace qv {
namespace {

struct TextCase {
  std::wstring json;
  std::wstring expected;
};

TEST(JsonText, EscapesOnlyWhatMustBeEscaped) {
  const TextCase cases[] = {
      {L"\t\n\r\"\\", L"\\t\\n\\r\\\"\\\\"},
      {L"\x01\b\f\x1F", L"\\u0001\\u0008\\u000c\\u001f"},
      {L"a/b \x7F \u00E9\u4E2D", L"a/b \x7F \u00E9\u4E2D"},
      {std::wstring(1, wchar_t(0xD83D)), std::wstring(1, wchar_t(0xD83D))},
      {std::wstring(L"a\0b", 3), L"a\\u0000b"},
  };
  for (const TextCase& c : cases)
    EXPECT_EQ(JsonEscape(c.json), c.expected);
  EXPECT_EQ(JsonQuote(L"a\"b"), L"\"a\\\"b\"");
  EXPECT_EQ(JsonQuotedArray({}), L"[]");
  EXPECT_EQ(JsonQuotedArray({L"", L"a", L"\n"}), L"[\"\",\"a\",\"\\n\"]");
}

TEST(JsonText, ReadsStringsWhereverTheKeyWithAColonStands) {
  const TextCase cases[] = {
      {LR"({"a":"x"})", L"x"},
      {LR"({"a" :"x"})", L"x"},
      {L"{\"a\"\t :  \"x\"}", L"x"},
      {LR"({"b":"a","a":"x"})", L"x"},  // the first occurrence is a value
      {LR"({"n":{"a":"inner"},"a":"outer"})", L"inner"},
      {LR"({"a":3,"name":"x"})", L"name"},  // the next quoted text, whatever it is
      {L"{\"a\"\n:\"x\"}", L""},            // only spaces and tabs may stand before the colon
      {LR"({"A":"x"})", L""},
      {LR"({"a":3})", L""},
      {LR"({"a)", L""},
      {LR"({"a":"cut)", L"cut"},
      {L"", L""},
  };
  for (const TextCase& c : cases)
    EXPECT_EQ(JsonGetString(c.json, L"a"), c.expected) << c.json;
}

TEST(JsonText, DecodesEscapesLeniently) {
  const TextCase cases[] = {
      {LR"(\n\r\t\"\\\/)", L"\n\r\t\"\\/"},
      {LR"(\b\f\x)", L"bfx"},
      {LR"(\u00e9t\u00E9)", L"\u00E9t\u00E9"},
      {LR"(\ud83d\ude00)", std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}},
      {LR"(\u12zz)", L"\u0012"},
      {LR"(\uzzzz)", std::wstring(1, L'\0')},
      {LR"(\u0x1F)", L"\u001F"},
      {LR"(\u -1z)", std::wstring(1, wchar_t(0xFFFF))},
      {LR"(\u+041)", L"A"},
  };
  for (const TextCase& c : cases)
    EXPECT_EQ(JsonGetString(L"{\"a\":\"" + c.json + L"\"}", L"a"), c.expected) << c.json;
}

TEST(JsonText, ReadsTruncatedEscapesAsTheyStand) {
  const TextCase cases[] = {
      {LR"("a":"x\)", L"x\\"},         {LR"("a":"x\u004)", L"xu004"},
      {LR"("a":"x\u0041)", L"xu0041"},  // four digits need something behind them
      {LR"("a":"x\u0041")", L"xA"},    {LR"("a":"x\u12")", L"xu12"},
  };
  for (const TextCase& c : cases)
    EXPECT_EQ(JsonGetString(c.json, L"a"), c.expected) << c.json;
}

TEST(JsonText, FindStringTakesTheFirstOccurrenceEvenWithoutAColon) {
  EXPECT_EQ(JsonFindString(LR"({"a":"x"})", L"a"), L"x");
  EXPECT_EQ(JsonFindString(LR"({"b":"a","c":"x"})", L"a"), L"c");
  EXPECT_EQ(JsonFindString(LR"({"b":1})", L"a"), L"");
}

TEST(JsonText, ReadsBooleansStrictly) {
  const std::pair<std::wstring, bool> cases[] = {
      {L"{\"a\":true}", true},
      {L"{\"a\" : : true}", true},
      {L"{\"a\":1}", true},
      {L"{\"a\":10}", true},
      {L"{\"a\":truest}", true},
      {L"{\"a\":\ttrue}", false},
      {L"{\"a\":True}", false},
      {L"{\"a\":\"true\"}", false},
      {L"{\"a\":yes}", false},
      {L"{\"a\":0}", false},
      {L"{\"b\":true}", false},
      {L"{\"a\":tru", false},
      {L"{\"b\":\"a\",\"a\":true}", false},  // the first occurrence counts, colon or not
  };
  for (const auto& [json, expected] : cases)
    EXPECT_EQ(JsonGetBool(json, L"a"), expected) << json;
}

TEST(JsonText, ReadsIntegersLikeTheCLibrary) {
  const std::pair<std::wstring, std::int32_t> cases[] = {
      {L"{\"a\":-12abc}", -12},
      {L"{\"a\":\"12\"}", 0},
      {L"{\"a\": \t\n+7}", 7},
      {L"{\"a\":}", 0},
      {L"{\"a\":- 5}", 0},
      {L"{\"a\":", 0},
      {L"{\"a\":2147483647}", 2147483647},
      {L"{\"a\":2147483648}", 2147483647},
      {L"{\"a\":-2147483649}", -2147483647 - 1},
      {L"{\"a\":99999999999999999999999}", 2147483647},
      {L"{\"b\":5}", 0},
  };
  for (const auto& [json, expected] : cases)
    EXPECT_EQ(JsonGetInt(json, L"a"), expected) << json;
}

TEST(JsonText, ReadsRealNumbersInAnyLocale) {
  const std::pair<std::wstring, double> cases[] = {
      {L"{\"a\":-12.5}", -12.5},
      {L"{\"a\":1e3}", 1000},
      {L"{\"a\":1E-2x}", 0.01},
      {L"{\"a\":+.5}", 0.5},
      {L"{\"a\":7.}", 7},
      {L"{\"a\":1e}", 1},
      {L"{\"a\":1,5}", 1},
      {L"{\"a\":\"1\"}", 0},
      {L"{\"a\":nan}", 0},
      {L"{\"a\":inf}", 0},
      {L"{\"a\":--1}", 0},
      {L"{\"a\":1e999}", HUGE_VAL},
      {L"{\"a\":-1e999}", -HUGE_VAL},
      {L"{\"a\":1e-999}", 0},
      {L"{\"b\":1}", 0},
  };
  for (const auto& [json, expected] : cases)
    EXPECT_EQ(JsonGetDouble(json, L"a"), expected) << json;
}

TEST(JsonText, FlagIsTrueUnlessLiterallyFalse) {
  const std::pair<std::wstring, bool> cases[] = {
      {L"{}", true},        {L"{\"a\":false}", false}, {L"{\"a\"x: \tfalse}", false},
      {L"{\"a\":0}", true}, {L"{\"a\":true}", true},   {L"{\"a\":\nfalse}", true},
      {L"{\"a\"}", true},   {L"{\"a\":fals", true},
  };
  for (const auto& [json, expected] : cases)
    EXPECT_EQ(JsonGetFlagDefaultTrue(json, L"a"), expected) << json;
}

TEST(JsonText, KeyPresenceIsTheQuotedNeedle) {
  EXPECT_TRUE(JsonHasKey(L"{\"a\":false}", L"a"));
  EXPECT_TRUE(JsonHasKey(L"[\"a\"]", L"a"));
  EXPECT_FALSE(JsonHasKey(L"{\"ab\":1}", L"a"));
}

TEST(JsonText, ReadsArraysOfStrings) {
  using Texts = std::vector<std::wstring>;
  const std::pair<std::wstring, std::optional<Texts>> cases[] = {
      {LR"({"a":[]})", Texts{}},
      {LR"({"a": [ "x" , "y\"]" ]})", Texts{L"x", L"y\"]"}},
      {LR"({"a":["x",1,null,["in"],{"k":"v]"},"y"]})", Texts{L"x", L"y"}},
      {LR"({"b":"a","a":["x"]})", Texts{L"x"}},
      {LR"({"a":"x"})", std::nullopt},
      {LR"({"a":["x")", std::nullopt},
      {LR"({"a":["x)", std::nullopt},
      {LR"({"a":["x",[)", std::nullopt},
      {LR"({"a":null,"b":["x"]})", std::nullopt},
      {LR"({"b":["x"]})", std::nullopt},
  };
  for (const auto& [json, expected] : cases)
    EXPECT_EQ(JsonGetStringArray(json, L"a"), expected) << json;
}

}  // namespace
}  // namespace qv
