#include "foundation/settings_text.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(SettingsText, PaneWidthOutsideItsRangeIsTheDefault) {
  const std::pair<std::wstring, int> cases[] = {
      {L"", 520},
      {LR"({"paneWidthPt": 239})", 520},
      {LR"({"paneWidthPt": 240})", 240},
      {LR"({"paneWidthPt":1600})", 1600},
      {LR"({"paneWidthPt": 1601})", 520},
      {LR"({"paneWidthPt": "600"})", 520},
      {LR"({"note":"paneWidthPt","paneWidthPt":600})", 600},
      {LR"({"old":{"paneWidthPt":300},"paneWidthPt":600})", 600},
  };
  for (const auto& [json, expected] : cases)
    EXPECT_EQ(PaneWidthFrom(json), expected) << json;
}

TEST(SettingsText, TellsAStoredWidthFromTheDefault) {
  EXPECT_EQ(StoredPaneWidth(LR"({"paneWidthPt": 520})"), 520);
  EXPECT_EQ(StoredPaneWidth(LR"({"paneWidthPt": 1601})"), std::nullopt);
  EXPECT_EQ(StoredPaneWidth(L""), std::nullopt);
}

TEST(SettingsText, UiLanguageIsAbsentUnlessANonEmptyString) {
  const std::pair<std::wstring, std::optional<std::wstring>> cases[] = {
      {L"", std::nullopt},
      {LR"({"uiLang": "zh-CN"})", L"zh-CN"},
      {LR"({"uiLang": ""})", std::nullopt},
      {LR"({"uiLang": null, "paneWidthPt": 520})", std::nullopt},
      {LR"({"hint":"uiLang","uiLang":"de"})", L"de"},
      {L"\uFEFF{\r\n\t\"uiLang\" : \"de\"}", L"de"},
  };
  for (const auto& [json, expected] : cases)
    EXPECT_EQ(UiLangFrom(json), expected) << json;
}

struct UpdateCase {
  std::wstring before;
  std::wstring after;
};

TEST(SettingsText, AddsAMemberAsTheLast) {
  const UpdateCase cases[] = {
      {L"", L"{\n  \"k\": 7\n}\n"},
      {L"no object", L"{\n  \"k\": 7\n}\n"},
      {L"[1, {\"a\": 2}]", L"{\n  \"k\": 7\n}\n"},
      {L"{}", L"{\n  \"k\": 7\n}"},
      {L"{ \n }\n", L"{\n  \"k\": 7\n}\n"},
      {L"{\n  \"a\": 1\n}\n", L"{\n  \"a\": 1,\n  \"k\": 7\n}\n"},
      {LR"({"a":{"k":1}})", L"{\"a\":{\"k\":1},\n  \"k\": 7}"},
      {LR"({"a":"k","b":["k",{"k":2}]})", L"{\"a\":\"k\",\"b\":[\"k\",{\"k\":2}],\n  \"k\": 7}"},
      {LR"({"a":"\"k\": }"})", L"{\"a\":\"\\\"k\\\": }\",\n  \"k\": 7}"},
      {LR"({"a":1,})", L"{\"a\":1,\n  \"k\": 7,}"},
      {L"{\"a\":1 /* \"k\": 2 } */ // }\n}", L"{\"a\":1,\n  \"k\": 7 /* \"k\": 2 } */ // }\n}"},
      {L"// {\n{ /* none */ }", L"// {\n{\n  \"k\": 7 /* none */ }"},
  };
  for (const UpdateCase& c : cases)
    EXPECT_EQ(WithSetting(c.before, L"k", L"7"), c.after);
}

TEST(SettingsText, ReplacesAMemberInPlace) {
  const UpdateCase cases[] = {
      {L"{\n  \"k\": 520,\n  \"a\": \"x\"\n}\n", L"{\n  \"k\": 7,\n  \"a\": \"x\"\n}\n"},
      {LR"({"a":{"k":1},"k":[1,{"x":"}"}],"b":2})", LR"({"a":{"k":1},"k":7,"b":2})"},
      {LR"({"a":"k","k":"v \" , }"})", LR"({"a":"k","k":7})"},
      {L"{\"k\" /* w */ : /* x */ 5 /* y */ , \"a\": 1}", L"{\"k\" /* w */ : /* x */ 7 /* y */ , \"a\": 1}"},
      {LR"({"k":,"a":1})", LR"({"k":7,"a":1})"},
      {LR"({"k":1,"k":2})", LR"({"k":7,"k":2})"},
      {L"\uFEFF{\"k\":1}tail", L"\uFEFF{\"k\":7}tail"},
  };
  for (const UpdateCase& c : cases)
    EXPECT_EQ(WithSetting(c.before, L"k", L"7"), c.after);
}

TEST(SettingsText, KeepsEverythingOfABrokenObject) {
  const UpdateCase cases[] = {
      {L"{", L"{\n  \"k\": 7\n}\n"},
      {L"{\"a\": \"cut", L"{\n  \"k\": 7,\"a\": \"cut"},
      {L"{\"a\": [1, 2}", L"{\n  \"k\": 7,\"a\": [1, 2}"},
      {L"{\"a\" 1, \"b\": 2}", L"{\"a\" 1, \"b\": 2,\n  \"k\": 7}"},
  };
  for (const UpdateCase& c : cases)
    EXPECT_EQ(WithSetting(c.before, L"k", L"7"), c.after);
}

TEST(SettingsText, WhatWasSavedIsWhatIsLoaded) {
  const std::wstring texts[] = {
      L"",
      LR"({"note":"uiLang","x":{"uiLang":"fr","paneWidthPt":300}})",
      LR"({"a":"cut)",
      LR"({"uiLang":null,"paneWidthPt":"wide",})",
  };
  for (const std::wstring& text : texts) {
    const std::wstring saved = WithSetting(WithSetting(text, L"uiLang", L"\"ja\""), L"paneWidthPt", L"640");
    EXPECT_EQ(UiLangFrom(saved), L"ja") << saved;
    EXPECT_EQ(PaneWidthFrom(saved), 640) << saved;
  }
}

TEST(SettingsText, PicksALanguageForAWindowsLanguageId) {
  const std::pair<unsigned, std::wstring> cases[] = {
      {0, L"en"},         {0x0404, L"zh-TW"}, {0x0C04, L"zh-TW"}, {0x1404, L"zh-TW"}, {0x7C04, L"zh-TW"},
      {0x0804, L"zh-CN"}, {0x1004, L"zh-CN"}, {0x0004, L"zh-CN"}, {0x0401, L"ar"},    {0x0407, L"de"},
      {0x0409, L"en"},    {0x0C0A, L"es"},    {0x040C, L"fr"},    {0x0411, L"ja"},    {0x0412, L"ko"},
      {0x0419, L"ru"},    {0x041E, L"th"},    {0x0421, L"id"},    {0x042A, L"vi"},    {0x043E, L"ms"},
      {0x0416, L"en"},  // Portuguese has no table
  };
  for (const auto& [id, code] : cases)
    EXPECT_EQ(LanguageForId(id), code) << id;
}

}  // namespace
}  // namespace qv
