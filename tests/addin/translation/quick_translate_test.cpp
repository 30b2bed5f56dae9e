#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "run_fixture.h"
#include "translation/quick_translate_worker.h"
#include "translation/quick_write.h"

namespace qv {
namespace {

namespace memory = devhost::memory;
using devhost::memory::kHostBusy;

class QuickTranslateTest : public RunTest {
 protected:
  void SetUp() override {
    RunTest::SetUp();
    translator_ = std::make_unique<QuickTranslator>(pane->context, pane->page);
  }

  /// Sends `{"requestId":id,"text":text}`; `members` are added.
  void Ask(std::wstring_view id, std::wstring_view text, std::wstring_view members = {}) {
    translator_->Translate(Concat(L"{\"action\":\"quickTranslate\",\"requestId\":", JsonQuote(id),
                                  L",\"text\":", JsonQuote(text), members, L"}"));
  }

  /// The answer to a request, from its id on; empty when none comes.
  std::wstring AnswerTo(std::wstring_view id) {
    const std::wstring start = Concat(L"onQuickTranslateResult({requestId:", JsonQuote(id), L",");
    if (!PumpUntilPageHas(start)) return {};
    const std::wstring script = pane->page.Find(start);
    return script.substr(script.find(start) + start.size());
  }

  /// Whether every worker has ended and what it posted is gone.
  [[nodiscard]] bool WorkersAreGone(long contextUses) {
    return PumpUntil([&] { return pane->context.use_count() <= contextUses; });
  }

  std::unique_ptr<QuickTranslator> translator_;
};

TEST_F(QuickTranslateTest, TranslatesOneTextWithoutACell) {
  FillRows(1);
  Ask(L"q1", L"Good \"day\"");
  EXPECT_EQ(AnswerTo(L"q1"), L"ok:true,translation:\"ZH:Good \\\"day\\\"\"});})();");
  const std::vector<nlohmann::json> bodies = service.TranslateBodies();
  ASSERT_EQ(bodies.size(), 1U);
  EXPECT_EQ(bodies[0].at("texts"), nlohmann::json({"Good \"day\""}));
  EXPECT_EQ(bodies[0].at("sourceLang"), "auto");
  EXPECT_EQ(bodies[0].at("targetLang"), "zh-CN");
  EXPECT_EQ(bodies[0].at("usageKind"), "translate_quick");
  EXPECT_EQ(bodies[0].at("clientProduct"), "excel");
  EXPECT_TRUE(bodies[0].contains("clientContext"));
  for (const char* absent : {"unitIds", "glossary", "instruction", "trace"})
    EXPECT_FALSE(bodies[0].contains(absent)) << absent;
  EXPECT_EQ(Text("A1"), L"Text number 1");
}

TEST_F(QuickTranslateTest, ThePagesTokenGoesBeforeTheProgramsOwn) {
  Ask(L"own", L"One", L",\"accessToken\":\"not-of-this-service\"");
  EXPECT_EQ(AnswerTo(L"own").rfind(L"ok:false,error:\"", 0), 0U);
  EXPECT_EQ(NativeAccessToken::Get(), L"dev-test");
  Ask(L"held", L"One");
  EXPECT_EQ(AnswerTo(L"held").rfind(L"ok:true", 0), 0U);
}

TEST_F(QuickTranslateTest, FailuresAnswerWithTheMessageThatARunWouldShow) {
  struct Case {
    nlohmann::json fault;
    std::wstring_view error;
  };
  const Case cases[] = {
      {{{"status", 401}}, L"登录已失效，请重新登录"},
      {{{"status", 402}}, L"积分不足\u00EF\u00BC\u008C请充值或升级套餐后继续翻译。"},
      {{{"status", 500}}, L"HTTP request failed"},
      {{{"status", 429}, {"body", {{"code", "rate_limited"}, {"message", "slow down"}}}}, L"slow down"},
      {{{"raw", "{\"translations\":[]}"}}, L"Empty translation response"},
      {{{"countMismatch", true}}, L"Translation count mismatch"},
      {{{"dropMidBody", true}}, L"HTTP request failed"},
  };
  int number = 0;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fault.dump());
    service.Reset();
    service.Fault(c.fault);
    const std::wstring id = Concat(L"q", ++number);
    Ask(id, L"One");
    EXPECT_EQ(AnswerTo(id), Concat(L"ok:false,error:", JsonQuote(c.error), L"});})();"));
    // No second try: the user asks again.
    EXPECT_EQ(service.TranslateBodies().size(), 1U);
  }
}

TEST_F(QuickTranslateTest, TenAtOnceAreMatchedByTheirIds) {
  // The first one is answered last.
  service.Fault({{"delayMs", 300}, {"match", "Text 0"}});
  for (int i = 0; i < 10; ++i)
    Ask(Concat(L"id", i), Concat(L"Text ", i), L",\"targetLang\":\"es\"");
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(AnswerTo(Concat(L"id", i)), Concat(L"ok:true,translation:\"ES:Text ", i, L"\"});})();"));
  EXPECT_EQ(pane->page.received.size(), 10U);
  EXPECT_TRUE(Contains(pane->page.received.back(), L"\"id0\""));
}

TEST_F(QuickTranslateTest, ARunGoesOnBesideIt) {
  FillRows(1);
  service.Fault({{"delayMs", 500}, {"match", "Text number 1"}});
  pane->Start();
  ASSERT_TRUE(pane->controller->IsRunning());
  Ask(L"q", L"Beside");
  EXPECT_EQ(AnswerTo(L"q"), L"ok:true,translation:\"ZH:Beside\"});})();");
  EXPECT_TRUE(pane->controller->IsRunning());
  EXPECT_TRUE(PumpUntilPageHas(L"onComplete({runId:1"));
  EXPECT_EQ(Text("A1"), L"ES:Text number 1");
}

TEST_F(QuickTranslateTest, AnAnswerForAClosedPaneIsDropped) {
  const long uses = pane->context.use_count();
  service.Fault({{"delayMs", 200}});
  Ask(L"late", L"One");
  Ask(L"posted", L"Two");
  ASSERT_TRUE(WaitForPostedTask());
  pane->Close();
  EXPECT_TRUE(WorkersAreGone(uses));
  EXPECT_TRUE(pane->page.received.empty());
}

class QuickWriteTest : public RunTest {
 protected:
  void Write(std::wstring_view mode, std::wstring_view text) {
    WriteQuickTranslation(pane->target, pane->page,
                          Concat(L"{\"action\":\"quickTranslateWrite\",\"mode\":", JsonQuote(mode),
                                 L",\"text\":", JsonQuote(text), L"}"));
  }
};

TEST_F(QuickWriteTest, PutsTheTextIntoTheTopLeftCellOfTheSelection) {
  FillRows(3);
  engine->Select(L"More", "C4:D9,A1");
  Write(L"replace", L"=neu");
  EXPECT_EQ(Text("C4", L"More"), L"=neu");
  EXPECT_EQ(engine->Sheet(L"More").Find(1, 1), nullptr);
  Write(L"insert", L"más");
  EXPECT_EQ(Text("C4", L"More"), L"=neu\nmás");
  EXPECT_TRUE(engine->Cell(L"More", "C4").at("wrap").get<bool>());

  engine->Select(L"Data", "B2");
  Write(L"insert", L"allein");
  EXPECT_EQ(Text("B2"), L"allein");
  EXPECT_FALSE(engine->Cell(L"Data", "B2").at("wrap").get<bool>());
  EXPECT_EQ(Text("A2"), L"Text number 2");
  EXPECT_TRUE(pane->page.received.empty());
}

TEST_F(QuickWriteTest, AppendsToWhatANumberOrAFormulaShows) {
  engine->Set(L"", "A1", 12.5);
  engine->SetFormula(L"", "A2", L"=A1*2", 25.0);
  engine->Select(L"Data", "A1");
  Write(L"insert", L"neu");
  EXPECT_EQ(Text("A1"), L"12.5\nneu");
  engine->Select(L"Data", "A2");
  Write(L"insert", L"neu");
  EXPECT_EQ(Text("A2"), L"25\nneu");
}

/// What is shown in a narrow column is not what the cell says.
TEST_F(QuickWriteTest, AppendsToTheWholeNumberInANarrowColumn) {
  struct Case {
    memory::CellValue value;
    const wchar_t* formula;
    const wchar_t* format;
    double width;
    const wchar_t* expected;
  };
  const Case cases[] = {
      {1234.5678, L"", L"General", 5, L"1234.5678\nneu"},
      {1234.5678, L"=A9*2", L"General", 2, L"1234.5678\nneu"},
      {0.5, L"", L"0.00%", 9, L"50.00%\nneu"},
      {0.5, L"", L"0.00%", 3, L"0.5\nneu"},
      {0.5, L"=A9/4", L"0.00%", 3, L"0.5\nneu"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(Concat(c.expected, L" ", c.formula)));
    if (*c.formula == L'\0') {
      engine->Set(L"", "A1", c.value);
    } else {
      engine->SetFormula(L"", "A1", c.formula, c.value);
    }
    const ComPtr<IDispatch> cell = engine->RangeObject(L"", "A1");
    const Variant format(c.format);
    const Variant width(c.width);
    EXPECT_EQ(PutDispProperty(cell.Get(), L"NumberFormat", &format), S_OK);
    EXPECT_EQ(PutDispProperty(cell.Get(), L"ColumnWidth", &width), S_OK);
    engine->Select(L"Data", "A1");
    Write(L"insert", L"neu");
    EXPECT_EQ(Text("A1"), c.expected);
  }
}

TEST_F(QuickWriteTest, UnknownModesAndEmptyTextsChangeNothing) {
  FillRows(1);
  engine->ResetCounters();
  Write(L"", L"neu");
  Write(L"append", L"neu");
  Write(L"replace", L"");
  EXPECT_EQ(Text("A1"), L"Text number 1");
  EXPECT_EQ(engine->Calls(), 0U);
  EXPECT_TRUE(pane->page.received.empty());
}

TEST_F(QuickWriteTest, ACellThatDoesNotTakeTheTextIsToldEachTime) {
  constexpr const wchar_t* kLocked = L"目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。";
  constexpr const wchar_t* kOther = L"部分单元格无法写入译文，请检查该格是否可编辑。";
  const auto expectTold = [&](const wchar_t* message, const char* when) {
    SCOPED_TRACE(when);
    EXPECT_EQ(Text("A1"), L"Text number 1");
    EXPECT_EQ(pane->page.received.size(), 3U);
    EXPECT_TRUE(
        pane->page.Has(Concat(L"{\"action\":\"sheetWriteBlocked\",\"message\":", JsonQuote(message), L"}")));
    EXPECT_TRUE(pane->page.Has(
        Concat(L"if(window.onSheetWriteBlocked)window.onSheetWriteBlocked({message:", JsonQuote(message))));
    pane->page.received.clear();
  };
  FillRows(1);
  engine->AddChart(L"Data", L"Sales");
  engine->Protect(L"Data", true);
  for (const wchar_t* mode : {L"replace", L"insert", L"replace"}) {
    Write(mode, L"neu");
    expectTold(kLocked, "locked");
  }
  engine->Protect(L"Data", false);

  // A cell is being edited: whatever is asked, the host refuses.
  for (const wchar_t* mode : {L"replace", L"insert"}) {
    engine->Faults().Fail({.error = {DISP_E_EXCEPTION, kHostBusy}});
    Write(mode, L"neu");
    engine->Fault({{"clear", true}});
    expectTold(kOther, "busy");
  }
  // Busy only when the text is put: it is not asked about locks any more.
  engine->Protect(L"Data", true);
  engine->Faults().Fail(
      {.member = "Range.Value2", .error = {DISP_E_EXCEPTION, kHostBusy}, .on = devhost::memory::kOnPut});
  engine->ResetCounters();
  Write(L"replace", L"neu");
  EXPECT_EQ(engine->Calls("Worksheet.ProtectContents") + engine->Calls("Range.Locked"), 0U);
  engine->Fault({{"clear", true}});
  expectTold(kOther, "busy at the end");
  engine->Protect(L"Data", false);

  // What cannot be read is not written over.
  engine->Faults().Fail({.member = "Range.Value2", .on = devhost::memory::kOnGet});
  Write(L"insert", L"neu");
  engine->Fault({{"clear", true}});
  expectTold(kLocked, "unreadable");

  engine->SelectChart(L"Data", 0);
  Write(L"replace", L"neu");
  EXPECT_EQ(Text("A1"), L"Text number 1");
  EXPECT_TRUE(pane->page.Has(L"sheetWriteBlocked"));
}

}  // namespace
}  // namespace qv
