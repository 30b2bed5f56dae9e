#include <string>
#include <vector>

#include "addin_test.h"
#include "foundation/text.h"
#include "host/message_pump.h"
#include "language_dialog_fixture.h"

namespace qv {
namespace {

using devhost::memory::CellStyle;

/// The ribbon's button on a sheet with numbers in rows 1, 2, 4 and 6, pressed as a user would.
class BlankRowsButton : public AddinTest {
 protected:
  void SetUp() override {
    engine_.AddWorkbook(L"Book.xlsx");
    for (const char* address : {"A1", "A2", "A4", "B6"})
      engine_.Set(L"Sheet1", address, 1.0);
  }

  void Press(const char* language = "en", int answer = IDYES) {
    SettingsFile::WriteLanguage(language);
    if (host_ == nullptr) Connect();
    boxes_.AnswerWith(answer);
    PressAgain();
  }
  void PressAgain() { host_->PressButton(*host_->Session().TheRibbon()->Find(L"btnDeleteBlankRows")); }
  [[nodiscard]] long LastRow() { return engine_.Sheet().UsedArea().row2; }
  [[nodiscard]] std::vector<CellStyle> Styles() {
    std::vector<CellStyle> styles;
    for (long row = 1; row <= 6; ++row)
      styles.push_back(engine_.Sheet().StyleAt(row, 1));
    return styles;
  }

 private:
  SettingsFile settings_;
};

/// Whether a button of the open box is the one that Enter presses.
bool IsDefault(int button) {
  const HWND box = FindWindowW(L"#32770", L"Delete blank rows");
  const HWND window = GetDlgItem(box, button);
  return window != nullptr && (GetWindowLongPtrW(window, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
}

TEST_F(BlankRowsButton, AsksInTheHostsNameAndSaysNothingOfASuccess) {
  boxes_.InsideTheNext([&] {
    EXPECT_EQ(boxes_.Title(), L"Delete blank rows");
    EXPECT_EQ(boxes_.Text(), L"Found 2 blank rows. Delete them?");
    EXPECT_EQ(boxes_.Buttons(), (std::vector<std::string>{"Yes", "No"}));
    EXPECT_EQ(boxes_.Icon(), "question");
    EXPECT_EQ(boxes_.Owner(), host_->Documents().TopWindow());
    EXPECT_TRUE(IsDefault(IDNO));
    EXPECT_FALSE(IsDefault(IDYES));
    EXPECT_EQ(LastRow(), 6);
  });
  Press();
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(LastRow(), 4);
  EXPECT_TRUE(InOrder(Log(), {"Excel DeleteBlankRowsClicked\r\n",
                              "Excel BlankRowCleaner used=6x2 r0=1 scope=[1,6] blank=2\r\n",
                              "Excel BlankRowCleaner done deleted=2 failed=0 sheet=Sheet1\r\n"}));
}

TEST_F(BlankRowsButton, ANoIsTheLastWord) {
  const std::vector<CellStyle> before = Styles();
  Press("en", IDNO);
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(LastRow(), 6);
  EXPECT_TRUE(Styles() == before);
  EXPECT_TRUE(InOrder(Log(), {"Excel BlankRowCleaner preview cancelled by user\r\n"}));
}

TEST_F(BlankRowsButton, ReportsEveryOtherOutcomeInTheUsersLanguage) {
  struct Case {
    const char* what;
    const char* language;
    const char* fails;
    int boxes;
    const wchar_t* text;
    const char* icon;
  };
  const Case cases[] = {
      {"unreadable", "en", "Range.Value2", 1, L"无法解析表格内容。", "error"},
      {"one fails", "en", "Range.Delete", 2,
       L"Deleted 1 blank rows.\n1 could not be deleted (the sheet may be protected).", "warning"},
      {"all fail", "zh-CN", "Range.EntireRow", 2,
       L"找到 1 个空白行，但均未删除（1 行失败）。\n\n请确保工作表未受保护。", "warning"},
      {"all fail", "en", "Range.EntireRow", 2,
       L"Found 1 blank rows, but none were deleted (1 failed).\n\nMake sure the sheet is not protected.",
       "warning"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.what) + ' ' + c.language);
    const int before = boxes_.Count();
    engine_.Faults().Fail({.member = c.fails, .times = 1});
    Press(c.language);
    engine_.Faults().Clear();
    EXPECT_EQ(boxes_.Count() - before, c.boxes);
    EXPECT_EQ(ToUtf8(boxes_.Text()), ToUtf8(c.text));
    EXPECT_EQ(boxes_.Icon(), c.icon);
    EXPECT_EQ(boxes_.Buttons(), std::vector<std::string>{"OK"});
    EXPECT_EQ(boxes_.Owner(), host_->Documents().TopWindow());
  }
  EXPECT_EQ(boxes_.Title(), L"AI Assistant");
}

TEST_F(BlankRowsButton, TellsWhatCountsAsBlankWhereNothingWasFound) {
  engine_.Set(L"Sheet1", "A3", 1.0);
  engine_.Set(L"Sheet1", "A5", 1.0);
  Press("zh-CN");
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_TRUE(boxes_.Text().starts_with(L"未找到空白行。\n\n")) << ToUtf8(boxes_.Text());
  EXPECT_EQ(boxes_.Icon(), "information");
}

TEST_F(BlankRowsButton, AnotherDocumentAndAnotherPressWaitForTheAnswer) {
  const HWND other = CreateWindowW(L"STATIC", L"Other", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr,
                                   nullptr, nullptr);
  boxes_.InsideTheNext([&] {
    EXPECT_FALSE(IsWindowEnabled(other));
    PressAgain();
  });
  Press("en", IDNO);
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_TRUE(IsWindowEnabled(other));
  EXPECT_TRUE(IsWindowEnabled(host_->Documents().TopWindow()));
  DestroyWindow(other);
  PressAgain();
  EXPECT_EQ(boxes_.Count(), 2);
}

TEST_F(BlankRowsButton, FillsAndSwitchesThatABusyHostKeepsComeBackByThemselves) {
  const std::vector<CellStyle> before = Styles();
  boxes_.InsideTheNext([&] {
    for (const char* member : {"Interior.*", "Application.DisplayAlerts"}) {
      engine_.Faults().Fail({.member = member, .error = {DISP_E_EXCEPTION, devhost::memory::kHostBusy}});
    }
  });
  Press("en", IDNO);
  EXPECT_FALSE(Styles() == before);
  EXPECT_FALSE(engine_.Host().displayAlerts);
  engine_.Faults().Clear();
  EXPECT_TRUE(
      devhost::PumpUntil([&] { return Styles() == before && engine_.Host().displayAlerts; }, kTimeoutMs));
  EXPECT_EQ(LastRow(), 6);
}

TEST_F(BlankRowsButton, WithoutAWorkbookThereIsNothingToRead) {
  engine_.CloseWorkbook(engine_.Host().workbooks.front());
  Press();
  EXPECT_EQ(boxes_.Text(), L"无法解析表格内容。");
  EXPECT_EQ(boxes_.Icon(), "error");
}

}  // namespace
}  // namespace qv
