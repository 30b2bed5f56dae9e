#include "addin/welcome_values.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>

namespace qv {
namespace {

TEST(WelcomeValues, EveryHostHasItsOwnAndTheRestIsWord) {
  const std::pair<std::wstring_view, std::wstring_view> cases[] = {
      {L"excel", L"WelcomeShown_excel"},  {L"EXCEL", L"WelcomeShown_excel"},
      {L"wps", L"WelcomeShown_wps"},      {L"wps-excel", L"WelcomeShown_et"},
      {L"WPS-Excel", L"WelcomeShown_et"}, {L"Et", L"WelcomeShown_et"},
      {L"", L"WelcomeShown_word"},        {L"wpp", L"WelcomeShown_word"},
      {L"excel ", L"WelcomeShown_word"},
  };
  for (const auto& [host, value] : cases)
    EXPECT_EQ(WelcomeValueOfHost(host), value) << std::wstring(host);
}

TEST(WelcomeValues, OnlyAUserWhoLooksAtTheHostIsAsked) {
  constexpr HostWindowFacts kLooking{true, true, false, true, true, true};
  EXPECT_TRUE(IsInFront(kLooking));
  // One fact at a time speaks against it.
  using Fact = bool HostWindowFacts::*;
  for (const Fact fact : {&HostWindowFacts::isWindow, &HostWindowFacts::isVisible,
                          &HostWindowFacts::isMinimised, &HostWindowFacts::hasForeground,
                          &HostWindowFacts::sharesThread, &HostWindowFacts::isForegroundRoot}) {
    HostWindowFacts facts = kLooking;
    facts.*fact = !(facts.*fact);
    EXPECT_FALSE(IsInFront(facts));
  }
}

}  // namespace
}  // namespace qv
