#include "addin/ribbon_names.h"

#include <gtest/gtest.h>

#include "foundation/text.h"

namespace qv {
namespace {

TEST(RibbonNames, HaveTheirFixedIds) {
  struct Case {
    const wchar_t* name;
    int id;
  };
  const Case cases[] = {
      {L"TranslateFullDocClicked", 100},
      {L"TranslateSelectionClicked", 101},
      {L"GlossaryClicked", 102},
      {L"InstructionClicked", 103},
      {L"QuickTranslateClicked", 104},
      {L"AiChatClicked", 105},
      {L"AccountClicked", 106},
      {L"AiAgentsClicked", 107},
      {L"GetImage", 108},
      {L"SupportClicked", 109},
      {L"ImageTranslateClicked", 110},
      {L"GrammarClicked", 111},
      {L"ImageToTableClicked", 112},
      {L"PdfToTableClicked", 113},
      {L"DeleteBlankRowsClicked", 114},
      {L"PdfTranslateClicked", 115},
      {L"OnRibbonLoad", 130},
      {L"GetLabel", 131},
      {L"GetScreentip", 132},
      {L"SettingsClicked", 133},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(RibbonDispId(c.name), c.id) << ToUtf8(c.name);
    EXPECT_TRUE(IsRibbonDispId(c.id)) << c.id;
  }
  for (const wchar_t* unknown : {L"translatefulldocclicked", L"GETLABEL", L"GetLabel ", L""})
    EXPECT_EQ(RibbonDispId(unknown), std::nullopt) << ToUtf8(unknown);
  for (const int unknown : {0, 99, 116, 129, 134})
    EXPECT_FALSE(IsRibbonDispId(unknown)) << unknown;
}

}  // namespace
}  // namespace qv
