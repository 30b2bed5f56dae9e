#include "addin/ribbon_labels.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(RibbonLabels, PreferTheSpreadsheetsOwnText) {
  EXPECT_EQ(RibbonLabel(L"en", L"btnTranslateFullDoc"), L"Whole sheet");
  EXPECT_EQ(RibbonScreentip(L"en", L"btnTranslateFullDoc"), L"Translate the whole sheet");
  EXPECT_EQ(RibbonLabel(L"en", L"btnAiAgents"), L"Coding Agent");
}

TEST(RibbonLabels, FallBackToTheSharedText) {
  EXPECT_EQ(RibbonLabel(L"en", L"btnSettings"), L"Settings");
  EXPECT_EQ(RibbonScreentip(L"en", L"btnSettings"), L"Display language");
  EXPECT_EQ(RibbonLabel(L"en", L"grpDialog"), L"Assistant");
  EXPECT_EQ(RibbonLabel(L"en", L"tabQuorvantis"), L"AI Assistant");
  EXPECT_EQ(RibbonLabel(L"pt", L"btnSettings"), L"Settings") << "a language without a table";
}

TEST(RibbonLabels, FallBackToTheControlsId) {
  EXPECT_EQ(RibbonLabel(L"en", L"btnNobody"), L"btnNobody");
  EXPECT_EQ(RibbonScreentip(L"en", L"btnNobody"), L"btnNobody");
  // There is a label, but no tip.
  EXPECT_EQ(RibbonScreentip(L"en", L"grpDialog"), L"grpDialog");
  // Texts of other hosts are not the spreadsheet's.
  EXPECT_EQ(RibbonLabel(L"en", L"btnAiAutofill"), L"btnAiAutofill");
  EXPECT_EQ(RibbonLabel(L"en", L""), L"");
}

}  // namespace
}  // namespace qv
