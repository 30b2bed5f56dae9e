#include "translation/display_mode.h"

#include <gtest/gtest.h>

#include "foundation/text.h"

namespace qv {
namespace {

TEST(DisplayMode, WordsOfThePageAreReadExactly) {
  EXPECT_EQ(ParseDisplayMode(L"dual"), DisplayMode::kDual);
  EXPECT_EQ(ParseDisplayMode(L"target"), DisplayMode::kTarget);
  EXPECT_EQ(ParseDisplayMode(L"original"), DisplayMode::kOriginal);
  EXPECT_EQ(ParseDisplayMode(L"restore"), DisplayMode::kOriginal);
  for (const wchar_t* word : {L"", L"Dual", L"both", L"original "})
    EXPECT_FALSE(ParseDisplayMode(word)) << ToUtf8(word);
  EXPECT_EQ(ParseDisplayScope(L"selection"), DisplayScope::kSelection);
  EXPECT_EQ(ParseDisplayScope(L"sheet"), DisplayScope::kSheet);
  for (const wchar_t* word : {L"session", L"", L"Sheet", L"book"})
    EXPECT_EQ(ParseDisplayScope(word), DisplayScope::kSession) << ToUtf8(word);
}

TEST(DisplayMode, AnEmptyScopeSaysWhy) {
  struct Case {
    DisplayMode mode;
    DisplayScope scope;
    std::size_t translated;
    std::size_t toChange;
    std::wstring_view message;
  };
  using enum DisplayMode;
  using enum DisplayScope;
  const Case cases[] = {
      {kDual, kSelection, 0, 0, L"选中的单元格没有翻译结果，请先翻译或重新选择"},
      {kOriginal, kSelection, 0, 0, L"选中的单元格没有翻译结果，请先翻译或重新选择"},
      {kTarget, kSheet, 0, 0, L"当前工作表没有翻译结果，请切换到已翻译的工作表"},
      {kOriginal, kSelection, 2, 0, L"没有可还原的单元格"},
      {kOriginal, kSheet, 2, 0, L"没有可还原的单元格"},
      {kOriginal, kSession, 0, 0, L"没有可还原的单元格"},
      {kOriginal, kSession, 2, 1, L""},
      {kDual, kSession, 0, 0, L""},
      {kDual, kSelection, 1, 1, L""},
  };
  for (const Case& c : cases)
    EXPECT_EQ(EmptyScopeMessage(c.mode, c.scope, c.translated, c.toChange), c.message) << ToUtf8(c.message);
}

TEST(DisplayMode, OnlyASwitchThatChangedNothingFails) {
  EXPECT_EQ(SwitchFailureMessage({0, 3, 0}), L"切换显示模式失败，请检查工作表是否受保护");
  EXPECT_EQ(SwitchFailureMessage({1, 3, 0}), L"");
  EXPECT_EQ(SwitchFailureMessage({}), L"");
  EXPECT_NE(StyleFailureMessage({0, 1, 5}), L"");
  EXPECT_EQ(StyleFailureMessage({0, 0, 5}), L"");
}

TEST(DisplayMode, AnswersAndLogLinesAreExact) {
  EXPECT_EQ(DisplayModeDoneScript(L"dual", {3, 1, 0}, L""),
            L"if(window.onExcelDisplayModeDone)onExcelDisplayModeDone({ok:true,mode:\"dual\",applied:3,"
            L"failed:1,message:\"\"})");
  EXPECT_EQ(DisplayModeDoneScript(L"a\"b", {}, kUnknownDisplayMode),
            L"if(window.onExcelDisplayModeDone)onExcelDisplayModeDone({ok:false,mode:\"a\\\"b\",applied:0,"
            L"failed:0,message:\"未知的显示模式\"})");
  EXPECT_EQ(TargetStyleDoneScript({3, 1, 2}, L"m"),
            L"if(window.onTargetStyleDone)onTargetStyleDone({ok:false,applied:3,failed:1,skipped:2,"
            L"message:\"m\"})");
  EXPECT_EQ(BatchDoneScript(L"applyAll"), L"if(window.onBatchDone)onBatchDone({action:\"applyAll\"})");
  EXPECT_EQ(DisplayModeLogLine(L"original", DisplayScope::kSheet, {3, 1, 0}),
            L"Excel displayMode=original scope=sheet applied=3 failed=1\r\n");
  EXPECT_EQ(RestyleLogLine({3, 1, 2}), L"RestyleTranslatedCells applied=3 skipped=2 failed=1\r\n");
}

}  // namespace
}  // namespace qv
