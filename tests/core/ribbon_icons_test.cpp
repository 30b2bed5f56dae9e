#include "addin/ribbon_icons.h"

#include <gtest/gtest.h>

#include <set>

#include "foundation/text.h"

namespace qv {
namespace {

TEST(RibbonIcons, BelongToEveryControlByIdAndByTag) {
  struct Case {
    const wchar_t* id;
    const wchar_t* tag;
    int icon;
  };
  const Case cases[] = {
      {L"btnTranslateFullDoc", L"translate_full", 110},
      {L"btnTranslateSelection", L"translate_selection", 111},
      {L"btnQuickTranslate", L"quick_translate", 112},
      {L"btnImageTranslate", L"image_translate", 119},
      {L"btnGrammar", L"grammar", 167},
      {L"btnImageToTable", L"image_to_table", 172},
      {L"btnPdfToTable", L"pdf_to_table", 177},
      {L"btnPdfTranslate", L"pdf_translate", 192},
      {L"btnAiChat", L"ai_chat", 114},
      {L"btnAiAgents", L"ai_agent", 118},
      {L"btnDeleteBlankRows", L"delete_blank_lines", 182},
      {L"btnGlossary", L"glossary", 115},
      {L"btnInstruction", L"instruction", 116},
      {L"btnAccount", L"account", 117},
      {L"btnSupport", L"support", 129},
      {L"btnSettings", L"settings", 197},
      // Controls of the other hosts' ribbons.
      {L"btnTranslateCurrentSlide", L"translate_slide", 110},
      {L"btnAiAutofill", L"ai_autofill", 113},
      {L"btnImageToWord", L"image_to_word", 172},
      {L"btnDeleteBlankLines", L"delete_blank_lines", 182},
      // Nobody's, and names in another case.
      {L"grpAccount", L"tabQuorvantis", 0},
      {L"btnaccount", L"Account", 0},
      {L"", L"", 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(RibbonIconId(c.id, L""), c.icon) << ToUtf8(c.id);
    EXPECT_EQ(RibbonIconId(L"btnUnknown", c.tag), c.icon) << ToUtf8(c.tag);
  }
  EXPECT_EQ(RibbonIconId(L"btnAccount", L"settings"), 117) << "the id comes first";
}

TEST(RibbonIcons, GrowWithTheDpiAndAreBiggerInWps) {
  struct Case {
    int dpi;
    int excel;
    int wps;
  };
  const Case cases[] = {
      {96, 32, 48},
      {120, 32, 64},
      {144, 48, 64},
      {168, 48, 96},
      {192, 64, 96},
      {240, 64, 96},
      {288, 96, 96},
      // One below and one at each step: 40.33 and 40.67, 56.33 and 56.67, 80.33 and 80.67 pixels in Excel.
      {121, 32, 64},
      {122, 48, 64},
      {169, 48, 96},
      {170, 64, 96},
      {241, 64, 96},
      {242, 96, 96},
      // 40.5 and 41 in WPS round up, 40 does not; 56 and 56.5; 80 and 80.5.
      {80, 32, 32},
      {81, 32, 48},
      {112, 32, 48},
      {113, 32, 64},
      {160, 48, 64},
      {161, 48, 96},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(RibbonIconPixels(c.dpi, false), c.excel) << c.dpi;
    EXPECT_EQ(RibbonIconPixels(c.dpi, true), c.wps) << c.dpi;
  }
}

TEST(RibbonIcons, HaveOneResourceForEverySize) {
  struct Case {
    int icon;
    int resources[4];
  };
  const Case cases[] = {
      {110, {120, 130, 140, 150}}, {111, {121, 131, 141, 151}}, {112, {122, 132, 142, 152}},
      {113, {123, 133, 143, 153}}, {114, {124, 134, 144, 154}}, {115, {125, 135, 145, 155}},
      {116, {126, 136, 146, 156}}, {117, {127, 137, 147, 157}}, {118, {128, 138, 148, 158}},
      {119, {159, 161, 163, 165}}, {129, {160, 162, 164, 166}}, {167, {168, 169, 170, 171}},
      {172, {173, 174, 175, 176}}, {177, {178, 179, 180, 181}}, {182, {183, 184, 185, 186}},
      {187, {188, 189, 190, 191}}, {192, {193, 194, 195, 196}}, {197, {198, 199, 200, 201}},
  };
  const int sizes[] = {32, 48, 64, 96};
  std::set<int> used;
  for (const Case& c : cases) {
    for (int column = 0; column < 4; ++column) {
      EXPECT_EQ(RibbonIconResource(c.icon, sizes[column]), c.resources[column]) << c.icon;
      EXPECT_TRUE(used.insert(c.resources[column]).second) << c.resources[column];
    }
    EXPECT_EQ(RibbonIconResource(c.icon, 40), 0);
  }
  for (const int unknown : {0, 109, 120, 128, 198})
    EXPECT_EQ(RibbonIconResource(unknown, 32), 0) << unknown;
}

}  // namespace
}  // namespace qv
