#include <utility>

#include "display_fixture.h"
#include "translation/selection_preview_reader.h"

namespace qv {
namespace {

/// The host runs messages inside its calls, and with them what the page asks for.
class RunNestingTest : public DisplayTest {
 protected:
  /// Acts once, inside the next call of the member.
  void Inside(const std::string& member, std::function<void()> act) {
    auto pending = std::make_shared<std::function<void()>>(std::move(act));
    engine->Faults().OnCall(member, [pending] {
      if (const std::function<void()> once = std::exchange(*pending, nullptr)) once();
    });
  }

  void ForgetCalls() { engine->Fault({{"clear", true}}); }
};

TEST_F(RunNestingTest, ACancelASwitchAndAStartInsideOneWriteLeaveItsCellFirst) {
  FillRows(3);
  pane->Start(kDual);
  bool reached = false;
  Inside("Range.Value2", [&] {
    reached = true;
    pane->controller->Cancel();
    Display().SetMode(L"target", L"");
    EXPECT_FALSE(pane->page.Has(L"onExcelDisplayModeDone("));
    EXPECT_TRUE(pane->session.isBeingWritten);
    pane->Start();
    EXPECT_FALSE(pane->controller->IsRunning());
  });
  pane->page.received.clear();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_TRUE(reached);
  EXPECT_TRUE(pane->page.Has(Done(L"target", 0, 0, L"正在翻译，请稍候再试")));
  for (const int row : {1, 2, 3})
    EXPECT_EQ(Text(ToUtf8(Concat(L"A", row))), Concat(L"ES:Text number ", row));
}

TEST_F(RunNestingTest, ASwitchAskedInsideAWriteThatWasCancelledIsDoneAfterIt) {
  FillRows(2);
  pane->Start();
  Inside("Range.HasFormula", [&] {
    pane->controller->Cancel();
    Display().SetMode(L"dual", L"");
  });
  EXPECT_EQ(Answer(L"onExcelDisplayModeDone("), Done(L"dual", 1, 0));
  EXPECT_EQ(Text("A1"), L"Text number 1\nES:Text number 1");
}

TEST_F(RunNestingTest, AStartInsideTheEndOfTheRunBeforeIsNotLost) {
  FillRows(2);
  pane->Start(kDual);
  // The first start waits for the cell; the second comes while the first ends the run.
  Inside("Range.WrapText", [&] {
    Inside("Application.ScreenUpdating", [&] { pane->Start(); });
    pane->Start(kDual);
  });
  pane->page.received.clear();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(pane->page.Count(L"onRunStarted"), 1);
  EXPECT_EQ(Text("A2"), L"ES:Text number 2");
}

TEST_F(RunNestingTest, ACancelInsideAStartsOwnCallsEndsIt) {
  FillRows(1);
  for (const char* member :
       {"Window.ActiveSheet", "Worksheet.Name", "Window.FreezePanes", "Window.SplitRow"}) {
    SCOPED_TRACE(member);
    Translate(kDual);
    pane->page.received.clear();
    Inside(member, [&] { pane->controller->Cancel(); });
    pane->Start(kDual);
    ForgetCalls();
    EXPECT_EQ(pane->page.Count(L"onCancelled()"), 1);
    EXPECT_FALSE(pane->page.Has(L"onRunStarted"));
    EXPECT_FALSE(pane->controller->IsRunning());
    EXPECT_FALSE(pane->target.Pinned().IsValid());
    EXPECT_EQ(Switch(L"dual"), Done(L"dual", 1, 0));
  }
}

TEST_F(RunNestingTest, AStartInsideTheCallsOfACancelledOneGoesOn) {
  FillRows(1);
  Inside("Window.ActiveSheet", [&] {
    pane->controller->Cancel();
    pane->Start();
    EXPECT_TRUE(pane->controller->IsRunning());
  });
  pane->Start(kDual);
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(pane->page.Count(L"onCancelled()"), 1);
  EXPECT_EQ(Text("A1"), L"ES:Text number 1");
}

TEST_F(RunNestingTest, APreviewThatWasOvertakenIsNotTold) {
  Set("A1", L"Older");
  Set("A2", L"Newer one");
  SelectionPreviewReader reader(pane->target, pane->session, *pane->context, pane->page);
  engine->Select(L"Data", "A1");
  Inside("Range.Value2", [&] {
    engine->Select(L"Data", "A2");
    reader.Push();
  });
  reader.Push();
  ASSERT_EQ(pane->page.received.size(), 1U);
  EXPECT_TRUE(pane->page.Has(L"\"$A$2\"")) << ToUtf8(pane->page.received[0]);
  Inside("Range.Value2", [&] { pane->Start(); });
  pane->page.received.clear();
  reader.Push();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_FALSE(pane->page.Has(L"onSelectionPreview"));
}

TEST_F(RunNestingTest, ASheetWithoutAReadableNameIsNotTakenForAnotherOne) {
  FillRows(1);
  service.Fault({{"delayMs", 100}});
  pane->Start();
  engine->Fault({{"fail", "Worksheet.Name"}, {"on", "get"}, {"times", "always"}});
  pane->controller->OnSheetActivated(true);
  EXPECT_FALSE(pane->page.Has(L"onExcelActiveSheetChanged"));
  pane->controller->Pause();
  pane->controller->Resume();
  EXPECT_TRUE(pane->page.Has(L"onExcelTranslateResumed({reason:\"manual\"})"));
  ForgetCalls();
  EXPECT_TRUE(PumpUntilPageHas(L"onComplete("));
}

}  // namespace
}  // namespace qv
