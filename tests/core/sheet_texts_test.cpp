#include "workbook/sheet_texts.h"

#include <gtest/gtest.h>

#include <vector>

namespace qv {
namespace {

TEST(SheetTexts, KeepsEveryTextWhereItIs) {
  SheetTexts texts(L"Data");
  std::vector<std::wstring> expected;
  std::vector<std::wstring_view> kept;
  // Through several blocks, with empty texts and one that is longer than a block.
  for (std::size_t i = 0; i < 5000; ++i) {
    expected.emplace_back(i == 2500 ? 40000 : i % 30, static_cast<wchar_t>(L'a' + i % 26));
    kept.push_back(texts.Keep(expected.back()));
  }
  for (std::size_t i = 0; i < expected.size(); ++i)
    ASSERT_EQ(kept[i], expected[i]) << i;
  EXPECT_EQ(texts.SheetName(), L"Data");
}

}  // namespace
}  // namespace qv
