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

}  // namespace
}  // namespace qv
