#include <gtest/gtest.h>
#include <ole2.h>

#include <memory>

#include "engines/memory/memory_engine.h"
#include "host/command_loop.h"
#include "host/development_host.h"
#include "host/late_bound.h"
#include "host/message_pump.h"
#include "host/settings_file.h"
#include "host/windows_path.h"

namespace qv::test {
namespace {

using namespace devhost;

/// The real add-in in a hidden development host with one workbook, driven by lines.
class DocumentWindowsTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    WriteServiceAddress(kNoService);
  }

  void Start(HostStyle style = HostStyle::kExcel) {
    engine_ = std::make_unique<MemoryEngine>(style);
    engine_->AddWorkbook(L"Book1.xlsx");
    host_ = std::make_unique<DevelopmentHost>(ProgramFolder() + L"\\QuorvantisExcel.dll", *engine_, log_,
                                              AddinSession::Manner{}, DocumentWindows::Look{style, false});
    runner_ =
        std::make_unique<CommandRunner>(*host_, [this](const Json& answer) { answers_.push_back(answer); });
  }

  void TearDown() override {
    runner_.reset();
    if (host_) {
      EXPECT_TRUE(host_->End().Clean());
    }
    host_.reset();
    OleUninitialize();
  }

  /// The answer to a line; messages run until it is there.
  Json Do(const std::string& line) {
    answers_.clear();
    runner_->Take({InputLine::Kind::kText, line});
    EXPECT_TRUE(PumpUntil(
        [this] {
          runner_->Advance();
          return !answers_.empty();
        },
        5'000));
    return answers_.empty() ? Json() : answers_.front();
  }
  std::string Refusal(const std::string& line) { return Do(line).value("error", std::string()); }

  [[nodiscard]] HWND HandleOf(int id) {
    const auto handle = GetNumberProperty(engine_->WindowObject(id).Get(), L"Hwnd");
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(handle.value_or(0)));
  }

  CallLog log_;
  std::unique_ptr<MemoryEngine> engine_;
  std::unique_ptr<DevelopmentHost> host_;
  std::unique_ptr<CommandRunner> runner_;
  std::vector<Json> answers_;
};

TEST_F(DocumentWindowsTest, AreTopLevelInExcelAndChildrenOfOneFrameInWps) {
  Start();
  EXPECT_EQ(GetAncestor(HandleOf(1), GA_ROOT), HandleOf(1));
  EXPECT_EQ(GetNumberProperty(engine_->Application(), L"Hwnd"),
            GetNumberProperty(engine_->WindowObject(1).Get(), L"Hwnd"));
  TearDown();

  SetUp();
  Start(HostStyle::kWps);
  const HWND frame = GetAncestor(HandleOf(1), GA_ROOT);
  EXPECT_NE(frame, HandleOf(1));
  EXPECT_EQ(GetNumberProperty(engine_->Application(), L"Hwnd"),
            static_cast<long>(reinterpret_cast<LONG_PTR>(frame)));
  Do(R"({"do":"window","new":true})");
  EXPECT_EQ(GetAncestor(HandleOf(2), GA_ROOT), frame);
}

TEST_F(DocumentWindowsTest, OpenSwitchAndCloseByCommand) {
  Start();
  const Json two = Do(R"({"do":"window","new":true})").at("windows");
  ASSERT_EQ(two.size(), 2u);
  EXPECT_EQ(two[1].at("caption"), "Book1.xlsx:2");
  EXPECT_TRUE(two[1].at("active").get<bool>());
  EXPECT_TRUE(Do(R"({"do":"window","activate":1})").at("windows")[0].at("active").get<bool>());
  EXPECT_EQ(Do(R"({"do":"window","close":2})").at("windows").size(), 1u);
  EXPECT_EQ(Do(R"({"do":"window","close":true})").at("windows").size(), 0u);
  EXPECT_NE(Refusal(R"({"do":"window","close":2})"), "");
  EXPECT_NE(Refusal(R"({"do":"window","new":true,"close":1})"), "");
}

TEST_F(DocumentWindowsTest, TakeTheirPanesWithThem) {
  Start();
  const auto factory = MakeCom<TaskPaneFactory>(host_->Panes(), engine_->Application());
  Do(R"({"do":"window","new":true})");
  ComPtr<_CustomTaskPane> pane;
  const Variant parent(engine_->WindowObject(1).Get());
  ASSERT_HRESULT_SUCCEEDED(factory->CreateCTP(Bstr(L"Quorvantis.ExcelPane").Get(), Bstr(L"T").Get(),
                                              parent.Get(), pane.GetAddressOf()));
  // It belongs to the window that was given, not to the active one.
  EXPECT_EQ(Do(R"({"do":"panes"})").at("panes")[0].at("window"), 1);
  Do(R"({"do":"window","close":2})");
  VARIANT_BOOL visible = VARIANT_FALSE;
  EXPECT_HRESULT_SUCCEEDED(pane->get_Visible(&visible));
  Do(R"({"do":"window","close":1})");
  EXPECT_HRESULT_FAILED(pane->get_Visible(&visible));
  EXPECT_TRUE(host_->Panes().OpenPanes().empty());
}

TEST_F(DocumentWindowsTest, LetTheUserDragAndDockAPane) {
  Start();
  Do(R"({"do":"open-pane"})");
  EXPECT_EQ(Do(R"({"do":"pane-width","pt":333})").at("pt"), 333);
  const auto frame = host_->Panes().OpenPanes().front().frame;
  const int half = static_cast<int>(frame->Document()->ClientSize().cx) / 2;
  Do(R"({"do":"pane-width","pt":9000})");
  EXPECT_EQ(frame->ContentSize().cx, half);
  for (const char* position : {"top", "bottom", "floating"}) {
    Do(R"({"do":"pane-dock","position":")" + std::string(position) + "\"}");
    EXPECT_NE(Refusal(R"({"do":"pane-width","pt":300})"), "") << position;
    EXPECT_FALSE(frame->SetWidthPt(300)) << position;
    EXPECT_EQ(frame->WidthPt(), 0) << position;
  }
  Do(R"({"do":"pane-dock","position":"left"})");
  EXPECT_EQ(Do(R"({"do":"pane-width","pt":250})").at("pt"), 250);
  frame->SetVisible(false);
  EXPECT_NE(Refusal(R"({"do":"pane-width","pt":300})"), "");
}

TEST_F(DocumentWindowsTest, RefuseWhatTheProtocolDoesNotKnow) {
  Start();
  const struct {
    const char* line;
    const char* error;
  } cases[] = {
      {R"({"do":"press"})", "\"button\" in \"press\" is missing"},
      {R"({"do":"press","button":"nobody"})", "the ribbon has no button \"nobody\" with an action"},
      {R"({"do":"pane-width","pt":0})",
       "\"pt\" in \"pane-width\" must be a whole number of points from 1 to 10000"},
      {R"({"do":"pane-width","pt":300})", "no pane is open"},
      {R"({"do":"window","close":false})", "\"close\" in \"window\" must be a window number or true"},
      {R"({"do":"choose","row":0})", "\"row\" in \"choose\" must be a row from 1 to 10000"},
      {R"({"do":"answer","button":"OK"})", "no box is open"},
      {R"({"do":"screenshot","path":"/tmp/x.png"})",
       "there is no window on the screen: start the host with --window"},
      {R"({"do":"page","eval":"1","pane":7})", "no pane is open"},
  };
  for (const auto& entry : cases)
    EXPECT_EQ(Refusal(entry.line), entry.error) << entry.line;
  EXPECT_EQ(Do(R"({"do":"messagebox"})").at("box"), nullptr);
}

/// Lines reach the host through a pipe and a box of the add-in's kind keeps it in a loop of its own.
TEST_F(DocumentWindowsTest, AnswerABoxThatKeepsTheHostInALoopOfItsOwn) {
  Start();
  HANDLE reading = nullptr;
  HANDLE writing = nullptr;
  ASSERT_TRUE(CreatePipe(&reading, &writing, nullptr, 0));
  const std::string lines =
      "{\"do\":\"messagebox\",\"timeoutMs\":5000}\n{\"do\":\"panes\"}\n{\"do\":\"answer\",\"button\":\"OK\"}"
      "\n"
      "{\"do\":\"answer\",\"button\":\"No\"}\n{\"do\":\"panes\"}\n";
  int answered = 0;
  // Another thread's message opens the box in the middle of the host's loop, as a timer of the add-in does.
  static int* result = nullptr;
  result = &answered;
  SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR timer, DWORD) noexcept {
    KillTimer(nullptr, timer);
    *result = MessageBoxW(nullptr, L"A question", L"A title", MB_YESNO | MB_ICONINFORMATION);
  });
  // Should no command close it, the test fails rather than waits.
  SetTimer(nullptr, 0, 8'000, [](HWND, UINT, UINT_PTR timer, DWORD) noexcept {
    KillTimer(nullptr, timer);
    PostMessageW(FindWindowW(L"#32770", L"A title"), WM_COMMAND, IDYES, 0);
  });
  {
    CommandLoop loop(*host_, *runner_, reading, CommandLoop::InputEnd::kQuits);
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(writing, lines.data(), static_cast<DWORD>(lines.size()), &written, nullptr));
    CloseHandle(writing);
    loop.Run();
  }
  EXPECT_EQ(answered, IDNO);
  ASSERT_EQ(answers_.size(), 5u);
  const Json& box = answers_[0].at("box");
  EXPECT_EQ(box.at("kind"), "dialog");
  EXPECT_EQ(box.at("title"), "A title");
  EXPECT_EQ(box.at("text"), "A question");
  EXPECT_EQ(box.at("icon"), "information");
  EXPECT_EQ(box.at("buttons"), Json({"Yes", "No"}));
  EXPECT_EQ(answers_[1].at("error"), "\"panes\" cannot run while a box is open: \"answer\" it first");
  EXPECT_EQ(answers_[2].at("error"), "the box has no button \"OK\"");
  EXPECT_TRUE(answers_[3].at("ok").get<bool>());
  EXPECT_TRUE(answers_[4].at("ok").get<bool>());
  EXPECT_TRUE(runner_->IsFinished());
}

}  // namespace
}  // namespace qv::test
