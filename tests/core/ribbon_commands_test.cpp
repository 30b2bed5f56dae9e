#include "addin/ribbon_commands.h"

#include <gtest/gtest.h>

#include "addin/ribbon_names.h"
#include "foundation/text.h"

namespace qv {
namespace {

TEST(RibbonCommands, LeadWhereTheirNamesSay) {
  struct Case {
    const wchar_t* name;
    RibbonAction action;
    const wchar_t* page = L"";
    const wchar_t* mode = L"";
    const wchar_t* logLine = L"";
    const wchar_t* event = L"";
  };
  using enum RibbonAction;
  const Case cases[] = {
      {L"TranslateFullDocClicked", kShowPage, L"translate", L"full", L"Excel TranslateFullDocClicked\r\n"},
      {L"TranslateSelectionClicked", kShowPage, L"translate", L"selection",
       L"Excel TranslateSelectionClicked\r\n"},
      {L"GlossaryClicked", kShowPage, L"glossary"},
      {L"InstructionClicked", kShowPage, L"instruction"},
      {L"QuickTranslateClicked", kShowPage, L"quicktranslate"},
      {L"GrammarClicked", kShowPage, L"grammar"},
      {L"AiChatClicked", kShowPage, L"chat"},
      {L"AiAgentsClicked", kShowPage, L"agents"},
      {L"AccountClicked", kShowPage, L"account"},
      {L"SupportClicked", kShowPage, L"support", L"", L"", L"support:entry_click"},
      {L"ImageTranslateClicked", kShowPage, L"imagetranslate"},
      {L"ImageToTableClicked", kShowPage, L"imagetotable"},
      {L"PdfToTableClicked", kShowPage, L"pdf2table"},
      {L"DeleteBlankRowsClicked", kRemoveBlankRows},
      {L"PdfTranslateClicked", kOpenPdfTranslation},
      {L"SettingsClicked", kChooseLanguage},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.name));
    const auto id = RibbonDispId(c.name);
    ASSERT_TRUE(id.has_value());
    const RibbonCommand* const command = FindRibbonCommand(*id);
    ASSERT_NE(command, nullptr);
    EXPECT_EQ(command->action, c.action);
    EXPECT_EQ(command->page, c.page);
    EXPECT_EQ(command->mode, c.mode);
    EXPECT_EQ(command->logLine, c.logLine);
    EXPECT_EQ(command->event, c.event);
  }
  for (const wchar_t* name : {L"OnRibbonLoad", L"GetLabel", L"GetScreentip", L"GetImage"})
    EXPECT_EQ(FindRibbonCommand(RibbonDispId(name).value_or(0)), nullptr) << ToUtf8(name);
}

}  // namespace
}  // namespace qv
