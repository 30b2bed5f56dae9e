#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "foundation/access_tokens.h"
#include "foundation/json_text.h"
#include "foundation/service_endpoint.h"
#include "foundation/settings_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr int kCases = 20'000;

/// Texts made of the pieces on which the scanners decide, so that nearly every case reaches their corners.
/// The same on every run.
class JsonishTexts {
 public:
  std::wstring Next() {
    static const std::wstring pieces[] = {
        L"{",           L"}",       L"[",      L"]",      L":",        L",",
        L"\"",          L"\"k\"",   L"\"k\":", L"\\",     L"\\u",      L"12",
        L"-",           L"e9",      L".",      L"true",   L"false",    L"null",
        L" ",           L"\t",      L"\r\n",   L"//",     L"/*",       L"*/",
        L"\\\"",        L"\\u00e9", L"a",      L"\u4E2D", L"\xD83D",   L"\"token\":\"",
        L"\"s\":\"v\"", L"\\u+",    L"0x1",    L"\"k",    L"https://", L"@",
        L"1.5",
    };
    std::uniform_int_distribution<std::size_t> pick(0, std::size(pieces) - 1);
    std::uniform_int_distribution<int> length(0, 24);
    std::wstring text;
    for (int i = length(random_); i > 0; --i)
      text += pieces[pick(random_)];
    return text;
  }

 private:
  std::mt19937 random_{20260301};
};

TEST(TextFuzz, ReadersTakeAnything) {
  JsonishTexts texts;
  for (int i = 0; i < kCases; ++i) {
    const std::wstring text = texts.Next();
    // A decoded text is never longer than what it was read from.
    EXPECT_LE(JsonGetString(text, L"k").size(), text.size());
    EXPECT_LE(JsonFindString(text, L"k").size(), text.size());
    EXPECT_LE(JsonGetStringArray(text, L"k").value_or(std::vector<std::wstring>()).size(), text.size());
    if (!JsonHasKey(text, L"k")) {
      EXPECT_FALSE(JsonGetBool(text, L"k"));
      EXPECT_EQ(JsonGetInt(text, L"k"), 0);
      EXPECT_EQ(JsonGetDouble(text, L"k"), 0.0);
      EXPECT_TRUE(JsonGetFlagDefaultTrue(text, L"k"));
    } else {
      static_cast<void>(JsonGetBool(text, L"k"));
      static_cast<void>(JsonGetInt(text, L"k"));
      static_cast<void>(JsonGetDouble(text, L"k"));
      static_cast<void>(JsonGetFlagDefaultTrue(text, L"k"));
    }
    EXPECT_FALSE(IsSameOrigin(text, {L"a.test", 443, true})) << text;
  }
}

TEST(TextFuzz, EscapingIsUndoneByReading) {
  JsonishTexts texts;
  for (int i = 0; i < kCases; ++i) {
    const std::wstring text = texts.Next();
    EXPECT_EQ(JsonGetString(L"{\"q\":" + JsonQuote(text) + L"}", L"q"), text);
  }
}

TEST(TextFuzz, SavedSettingsAreReadBackAndNothingElseIsLost) {
  JsonishTexts texts;
  for (int i = 0; i < kCases; ++i) {
    const std::wstring before = texts.Next();
    const std::wstring after = WithSetting(before, L"paneWidthPt", L"641");
    EXPECT_EQ(PaneWidthFrom(after), 641) << before << L"\n->\n" << after;
    EXPECT_EQ(WithSetting(after, L"paneWidthPt", L"641"), after) << before;
    // An addition takes nothing away but blanks; only a text without any object is replaced.
    if (after != L"{\n  \"paneWidthPt\": 641\n}\n") {
      const std::wstring added = ReplaceAll(after, L"\"paneWidthPt\": 641", L"");
      for (const wchar_t unit : {L'"', L'{', L'}', L'[', L']', L':', L'\\', L'k', L'\u4E2D', L'/'})
        EXPECT_GE(std::ranges::count(added, unit), std::ranges::count(before, unit)) << before;
    }
  }
}

TEST(TextFuzz, NoTokenSurvives) {
  JsonishTexts texts;
  for (int i = 0; i < kCases; ++i) {
    const std::wstring message = texts.Next() + L"\"accessToken\":\"SECRET\"" + texts.Next();
    EXPECT_FALSE(Contains(WithoutTokens(message), L"SECRET")) << message;
  }
}

}  // namespace
}  // namespace qv
