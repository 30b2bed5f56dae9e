#include <gtest/gtest.h>

#include <iterator>
#include <utility>

#include "addin/ui_language_dialog_layout.h"
#include "addin/ui_languages.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr int kRoomy = 10'000;

TEST(UiLanguages, AreOfferedInTheirOrderAndOwnScript) {
  const std::pair<const wchar_t*, const wchar_t*> expected[] = {
      {L"zh-CN", L"中文（简体）"},
      {L"zh-TW", L"中文（繁體）"},
      {L"en", L"English"},
      {L"ja", L"日本語"},
      {L"ru", L"Русский"},
      {L"ms", L"Bahasa Melayu"},
      {L"th", L"ไทย"},
      {L"de", L"Deutsch"},
      {L"fr", L"Français"},
      {L"es", L"Español"},
      {L"id", L"Bahasa Indonesia"},
      {L"vi", L"Tiếng Việt"},
      {L"ko", L"한국어"},
      {L"ar", L"العربية"},
  };
  ASSERT_EQ(UiLanguages().size(), std::size(expected));
  int row = 0;
  for (const auto& [code, name] : expected) {
    EXPECT_STREQ(UiLanguages()[static_cast<std::size_t>(row)].name, name) << ToUtf8(code);
    EXPECT_EQ(UiLanguageRow(code), row++) << ToUtf8(code);
  }
  for (const wchar_t* unknown : {L"pt", L"zh", L"EN", L""})
    EXPECT_EQ(UiLanguageRow(unknown), std::nullopt) << ToUtf8(unknown);
}

TEST(UiLanguages, AreReadFromRightToLeftInArabicAlone) {
  for (const UiLanguage& language : UiLanguages())
    EXPECT_EQ(IsRightToLeft(language.code), std::wstring_view(language.name) == L"العربية");
}

TEST(UiLanguages, AreToldToThePanels) {
  EXPECT_EQ(UiLangChangedMessage(L"zh-TW"), L"{\"action\":\"uiLangChanged\",\"uiLang\":\"zh-TW\"}");
}

TEST(UiLanguageDialogLayout, ScalesWithTheDpi) {
  struct Case {
    int dpi;
    int width;
    int margin;
    int buttonWidth;
    int rowHeight;
  };
  const Case cases[] = {
      {96, 420, 24, 92, 34}, {120, 525, 30, 115, 43}, {144, 630, 36, 138, 51}, {192, 840, 48, 184, 68}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.dpi);
    const UiLanguageDialogLayout layout = LayOutUiLanguageDialog(c.dpi, 0, kRoomy);
    EXPECT_EQ(layout.width, c.width);
    EXPECT_EQ(layout.title.left, c.margin);
    EXPECT_EQ(layout.body.width, UiLanguageDialogTextWidth(c.dpi));
    EXPECT_EQ(UiLanguageDialogTextWidth(c.dpi), c.width - 2 * c.margin);
    EXPECT_EQ(layout.ok.width, c.buttonWidth);
    EXPECT_EQ(layout.cancel.width, c.buttonWidth);
    EXPECT_EQ(layout.cancel.Right(), c.width - c.margin);
    EXPECT_EQ(layout.rowHeight, c.rowHeight);
  }
}

TEST(UiLanguageDialogLayout, StacksWithoutOverlap) {
  for (const int dpi : {96, 144, 240}) {
    for (const int body : {0, 51, 300}) {
      SCOPED_TRACE(dpi * 1000 + body);
      const UiLanguageDialogLayout layout = LayOutUiLanguageDialog(dpi, body, kRoomy);
      EXPECT_GE(layout.body.height, body);
      EXPECT_LT(layout.title.Bottom(), layout.body.top);
      EXPECT_LT(layout.body.Bottom(), layout.frame.top);
      EXPECT_LT(layout.frame.top, layout.list.top);
      EXPECT_LT(layout.list.Bottom(), layout.frame.Bottom());
      EXPECT_LT(layout.list.Right(), layout.frame.Right());
      EXPECT_LT(layout.frame.Bottom(), layout.ok.top);
      EXPECT_EQ(layout.ok.top, layout.cancel.top);
      EXPECT_LT(layout.ok.Right(), layout.cancel.left);
      EXPECT_LT(layout.ok.Bottom(), layout.height);
      EXPECT_EQ(layout.list.height, 8 * layout.rowHeight);
    }
  }
}

TEST(UiLanguageDialogLayout, ShortensTheListOnASmallScreen) {
  const int full = LayOutUiLanguageDialog(96, 51, kRoomy).height;
  for (int height = full; height > full - 5 * 34; --height) {
    const UiLanguageDialogLayout layout = LayOutUiLanguageDialog(96, 51, height);
    ASSERT_LE(layout.height, height);
    ASSERT_GT(layout.height, height - 34);
    ASSERT_EQ(layout.list.height % 34, 0);
  }
  EXPECT_EQ(LayOutUiLanguageDialog(96, 51, 0).list.height, 3 * 34);
}

}  // namespace
}  // namespace qv
