#include "foundation/json_parts.h"

#include <gtest/gtest.h>

#include <random>

namespace qv {
namespace {

TEST(JsonParts, AKeyIsNeverMistakenForAValue) {
  const auto members = JsonMembersOf(
      L" {\"source\":\"target\", \"target\" : \"a\\\"b\\u00e4\",\"n\":{\"note\":\"inner\"},"
      L"\"count\":-1.5e+3,\"target\":\"second\"}\r\n");
  ASSERT_TRUE(members);
  EXPECT_EQ(JsonStringOf(*members, L"source"), L"target");
  EXPECT_EQ(JsonStringOf(*members, L"target"), L"a\"bä");
  EXPECT_EQ(JsonStringOf(*members, L"note"), std::nullopt);
  EXPECT_EQ(JsonStringOf(*members, L"count"), std::nullopt);
  EXPECT_EQ(JsonValueOf(*members, L"count"), L"-1.5e+3");
  EXPECT_EQ(JsonValueOf(*members, L"n"), L"{\"note\":\"inner\"}");
  EXPECT_EQ(JsonValueOf(*members, L"absent"), L"");
}

TEST(JsonParts, ElementsKeepTheirOrderAndText) {
  const auto elements = JsonElementsOf(L"[ 0 ,\"],\",{\"a\":[1,2]}, [] ,null]");
  ASSERT_TRUE(elements);
  const std::vector<std::wstring_view> expected = {L"0", L"\"],\"", L"{\"a\":[1,2]}", L"[]", L"null"};
  EXPECT_EQ(*elements, expected);
  EXPECT_TRUE(JsonElementsOf(L"[]")->empty());
  EXPECT_TRUE(JsonMembersOf(L"{ }")->empty());
}

TEST(JsonParts, WhatIsNoJsonIsRefused) {
  for (const wchar_t* object : {L"",
                                L"[]",
                                L"null",
                                L"{",
                                L"}",
                                L"{\"a\"}",
                                L"{\"a\":}",
                                L"{\"a\":1,}",
                                L"{\"a\":1 \"b\":2}",
                                L"{a:1}",
                                L"{\"a\":\"x}",
                                L"{\"a\":[}",
                                L"{\"a\":{]}",
                                L"{\"a\":[1,2}",
                                L"{\"a\":1}}",
                                L"{\"a\":01}",
                                L"{\"a\":1.}",
                                L"{\"a\":.5}",
                                L"{\"a\":+1}",
                                L"{\"a\":1e}",
                                L"{\"a\":True}",
                                L"{\"a\":nul}",
                                L"{\"a\":-}",
                                L"{\"a\":\"x\\"}) {
    EXPECT_FALSE(JsonMembersOf(object))
        << std::string(object, object + std::char_traits<wchar_t>::length(object));
  }
  for (const wchar_t* array : {L"", L"{}", L"[", L"[1", L"[1,]", L"[,1]", L"[1 2]", L"[1]x", L"[\"a]"})
    EXPECT_FALSE(JsonElementsOf(array));
}

TEST(JsonParts, DeepNestingNeedsNoStack) {
  const std::wstring deep = std::wstring(1'000'000, L'[') + std::wstring(1'000'000, L']');
  EXPECT_EQ(JsonElementsOf(deep)->size(), 1U);
  EXPECT_FALSE(JsonElementsOf(deep.substr(1)));
}

TEST(JsonParts, NoTextBreaksTheReaders) {
  constexpr std::wstring_view kUnits = L"{}[]\",:\\u01.-eE+ truefalsn\n";
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::wstring text(1, i % 2 == 0 ? L'{' : L'[');
    for (auto length = random() % 24; length > 0; --length)
      text += kUnits[random() % kUnits.size()];
    const auto members = JsonMembersOf(text);
    const auto elements = JsonElementsOf(text);
    EXPECT_FALSE(members && elements);
  }
}

}  // namespace
}  // namespace qv
