#include "addin/ribbon_names.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(RibbonNames, HaveTheirFixedIds) {
  EXPECT_EQ(RibbonDispId(L"TranslateFullDocClicked"), 100);
  EXPECT_EQ(RibbonDispId(L"GetImage"), 108);
  EXPECT_EQ(RibbonDispId(L"PdfTranslateClicked"), 115);
  EXPECT_EQ(RibbonDispId(L"OnRibbonLoad"), 130);
  EXPECT_EQ(RibbonDispId(L"SettingsClicked"), 133);
  EXPECT_EQ(RibbonDispId(L"translatefulldocclicked"), std::nullopt);
  EXPECT_EQ(RibbonDispId(L""), std::nullopt);
  EXPECT_TRUE(IsRibbonDispId(133));
  EXPECT_FALSE(IsRibbonDispId(116));
  EXPECT_FALSE(IsRibbonDispId(0));
}

}  // namespace
}  // namespace qv
