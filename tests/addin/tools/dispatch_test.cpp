#include <comdef.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "addin/tools/tools_fixture.h"

namespace qv::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(10);

/// Messages are handled until the condition holds; false when it does not within the patience.
template <typename Condition>
bool PumpUntil(const Condition& holds) {
  const auto end = Clock::now() + kPatience;
  while (!holds()) {
    if (Clock::now() > end) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    PumpMessages();
  }
  return true;
}

/// One call from a thread of its own.
class Caller {
 public:
  Caller(std::shared_ptr<ToolDispatcher> dispatcher, std::wstring action, std::wstring json = L"{}",
         DWORD limitMs = kDispatchLimitMs)
      : thread_([this, dispatcher = std::move(dispatcher), action = std::move(action), json = std::move(json),
                 limitMs] {
          result_ = dispatcher->DispatchSync(action, json, limitMs);
          done_ = true;
        }) {}
  Caller(const Caller&) = delete;
  Caller& operator=(const Caller&) = delete;
  ~Caller() { thread_.join(); }

  [[nodiscard]] bool IsDone() const { return done_; }
  /// Without handling messages: what comes must not need this thread.
  [[nodiscard]] std::wstring Wait() {
    const auto end = Clock::now() + kPatience;
    while (!done_ && Clock::now() < end)
      std::this_thread::yield();
    return done_ ? result_ : L"still waiting";
  }

 private:
  std::wstring result_;
  std::atomic<bool> done_{false};
  std::thread thread_;
};

class Dispatch : public ToolsTest {
 protected:
  /// A dispatcher on the pane whose tools are `run`.
  std::shared_ptr<ToolDispatcher> With(ToolRunner run) {
    auto dispatcher = std::make_shared<ToolDispatcher>(pane, std::move(run));
    dispatcher->SetConnected(true);
    return dispatcher;
  }
  /// Until a task waits for the window, which does not get it yet.
  void AwaitPost() const {
    const auto queued = [&] {
      MSG message;
      return PeekMessageW(&message, window.Handle(), kUiTaskMessage, kUiTaskMessage, PM_NOREMOVE) != 0;
    };
    const auto end = Clock::now() + kPatience;
    while (!queued() && Clock::now() < end)
      std::this_thread::yield();
  }
  [[nodiscard]] std::wstring Call(const std::shared_ptr<ToolDispatcher>& dispatcher,
                                  const std::wstring& action) {
    Caller caller(dispatcher, action);
    EXPECT_TRUE(PumpUntil([&] { return caller.IsDone(); }));
    return caller.Wait();
  }
};

TEST_F(Dispatch, RunsAToolOnTheHostsThreadAndBringsItsResult) {
  SetText("A1", L"here");
  const TraceTail trace;
  Caller caller(tools->Dispatcher(), L"excelReadRange", LR"({"range":"A1"})");
  EXPECT_TRUE(PumpUntil([&] { return caller.IsDone(); }));
  const std::wstring result = caller.Wait();
  EXPECT_EQ(result, LR"({"cells":[{"row":1,"col":1,"value":"here"}]})");
  EXPECT_TRUE(trace.Has(L"DispatchSync enter action=excelReadRange jsonLen=14\r\n"));
  EXPECT_TRUE(trace.Has(L"DispatchSync done action=excelReadRange resultLen=" +
                        std::to_wstring(result.size()) + L"\r\n"));
}

TEST_F(Dispatch, CallsRunOneAfterTheOtherAndNeverTwice) {
  std::atomic<int> runs{0};
  int inside = 0;
  const auto dispatcher = With([&](std::wstring_view action, const std::wstring&) {
    EXPECT_EQ(++inside, 1);
    ++runs;
    --inside;
    return std::wstring(action);
  });
  std::vector<std::unique_ptr<Caller>> callers;
  for (int i = 0; i < 20; ++i)
    callers.push_back(std::make_unique<Caller>(dispatcher, std::to_wstring(i)));
  EXPECT_TRUE(
      PumpUntil([&] { return std::ranges::all_of(callers, [](auto& caller) { return caller->IsDone(); }); }));
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(callers[static_cast<std::size_t>(i)]->Wait(), std::to_wstring(i));
  EXPECT_EQ(runs, 20);
}

TEST_F(Dispatch, AToolThatComesWhileAnotherRunsWaitsForItsEnd) {
  std::vector<std::wstring> steps;
  std::optional<Caller> second;
  std::optional<Caller> third;
  std::shared_ptr<ToolDispatcher> dispatcher;
  dispatcher = With([&](std::wstring_view action, const std::wstring&) {
    steps.push_back(std::wstring(action) + L" begins");
    if (action == L"outer") {
      // The calls come in while the host handles messages.
      for (auto* const call : {&second, &third}) {
        call->emplace(dispatcher, call == &second ? L"second" : L"third");
        AwaitPost();
        PumpMessages();
      }
    }
    steps.push_back(std::wstring(action) + L" ends");
    return std::wstring(action);
  });
  Caller outer(dispatcher, L"outer");
  EXPECT_TRUE(PumpUntil([&] { return outer.IsDone() && second && second->IsDone() && third->IsDone(); }));
  EXPECT_EQ(steps, (std::vector<std::wstring>{L"outer begins", L"outer ends", L"second begins",
                                              L"second ends", L"third begins", L"third ends"}));
  EXPECT_EQ(second->Wait(), L"second");
}

TEST_F(Dispatch, AToolThatWaitsForItsTurnIsDroppedWithThePane) {
  int runs = 0;
  const auto dispatcher = With([](std::wstring_view, const std::wstring&) { return std::wstring(); });
  dispatcher->Turns().Run([&] {
    dispatcher->Turns().Run([&] { ++runs; });
    dispatcher->Close();
    dispatcher->Turns().Run([&] { ++runs; });
  });
  PumpMessages();
  EXPECT_EQ(runs, 0);
}

TEST_F(Dispatch, ACallThatTakesTooLongEndsButItsToolStillRuns) {
  std::atomic<int> runs{0};
  const auto dispatcher = With([&](std::wstring_view, const std::wstring&) {
    ++runs;
    return std::wstring(L"late");
  });
  const TraceTail trace;
  EXPECT_EQ(Caller(dispatcher, L"slow", L"{}", 50).Wait(), Error(L"操作超时"));
  EXPECT_TRUE(trace.Has(L"DispatchSync timeout/err action=slow wr=258\r\n"));
  EXPECT_EQ(runs, 0);
  PumpMessages();
  EXPECT_EQ(runs, 1);
}

TEST_F(Dispatch, AnExceptionIsAResultAndALogLine) {
  struct Case {
    ToolRunner run;
    std::wstring result;
    std::wstring line;
  };
  const Case cases[] = {
      {[](auto&&...) -> std::wstring { throw _com_error(E_ACCESSDENIED); }, Error(L"COM 异常"),
       L"DispatchSync _com_error action=bad hr=0x80070005\r\n"},
      {[](auto&&...) -> std::wstring { throw std::bad_alloc(); }, Error(L"COM 异常"),
       L"DispatchSync _com_error action=bad hr=0x8007000E\r\n"},
      {[](auto&&...) -> std::wstring { throw 7; }, Error(L"未知异常"),
       L"DispatchSync unknown exception action=bad\r\n"},
  };
  for (const Case& each : cases) {
    const TraceTail trace;
    EXPECT_EQ(Call(With(each.run), L"bad"), each.result);
    EXPECT_TRUE(trace.Has(each.line));
  }
}

TEST_F(Dispatch, ClosingWakesACallerAtOnceAndDropsItsCall) {
  int runs = 0;
  const auto dispatcher = With([&](std::wstring_view, const std::wstring&) {
    ++runs;
    return std::wstring();
  });
  Caller first(dispatcher, L"first");
  AwaitPost();
  pane->MarkClosing();
  dispatcher->Close();
  EXPECT_EQ(first.Wait(), Error(L"操作超时"));
  PumpMessages();
  EXPECT_EQ(runs, 0);
  EXPECT_EQ(Caller(dispatcher, L"later").Wait(), Error(L"未连接到 Excel"));
}

TEST_F(Dispatch, WakingEndsTheWaitButNotTheNextOne) {
  const auto dispatcher = With([](std::wstring_view, const std::wstring&) { return std::wstring(L"ran"); });
  Caller caller(dispatcher, L"first");
  const auto end = Clock::now() + kPatience;
  while (!caller.IsDone() && Clock::now() < end)
    dispatcher->WakeWaiters();
  EXPECT_EQ(caller.Wait(), Error(L"操作超时"));
  EXPECT_EQ(Call(dispatcher, L"second"), L"ran");
}

TEST_F(Dispatch, ACallToAPaneWithoutAWindowDoesNotWait) {
  const auto dispatcher = With([](std::wstring_view, const std::wstring&) { return std::wstring(); });
  pane->Tasks().Close();
  EXPECT_EQ(Caller(dispatcher, L"any").Wait(), Error(L"操作超时"));
}

TEST_F(Dispatch, ACallerMayOutliveThePane) {
  const std::shared_ptr<ToolDispatcher> dispatcher = tools->Dispatcher();
  tools->Close();
  pane->Tasks().Close();
  tools.reset();
  const TraceTail trace;
  EXPECT_EQ(Caller(dispatcher, L"excelReadRange").Wait(), Error(L"未连接到 Excel"));
  EXPECT_FALSE(trace.Has(L"DispatchSync"));
  tools.emplace(pane, target, panel);
}

TEST_F(Dispatch, TheNextToolRunsEvenWhenNoTaskCanBePosted) {
  int runs = 0;
  const auto dispatcher = With([](std::wstring_view, const std::wstring&) { return std::wstring(); });
  dispatcher->Turns().Run([&] {
    dispatcher->Turns().Run([&] { ++runs; });
    pane->Tasks().Close();
  });
  EXPECT_EQ(runs, 1);
}

class PanelPath : public ToolsTest {
 protected:
  void Post(const std::wstring& action, const std::wstring& rest = L"") {
    tools->HandleAutofillMessage(action,
                                 L"{\"action\":\"" + action + L"\",\"requestId\":\"r\\\"1\"" + rest + L"}");
  }
  static std::wstring Reply(const wchar_t* ok, const std::wstring& data) {
    return LR"(if(window.QuorvantisTerminology)QuorvantisTerminology._onResponse({"requestId":"r\"1","ok":)" +
           std::wstring(ok) + L",\"data\":" + data + L"});";
  }
};

TEST_F(PanelPath, RepliesWithTheResultOnceTheHostHasTime) {
  SetText("A1", L"x");
  const TraceTail trace;
  Post(L"excelReadRange", LR"(,"range":"A1")");
  EXPECT_TRUE(panel.scripts.empty());
  PumpMessages();
  const std::wstring result = LR"({"cells":[{"row":1,"col":1,"value":"x"}]})";
  EXPECT_EQ(panel.scripts, std::vector{Reply(L"true", result)});
  EXPECT_TRUE(trace.Has(L"HandleAutofillMessage action=excelReadRange requestId=r\"1\r\n"));
  EXPECT_TRUE(
      trace.Has(L"HandleAutofillMessage result action=excelReadRange ok=true payload=" + result + L"\r\n"));
}

TEST_F(PanelPath, AToolsOwnErrorIsDataAndOnlyAnUnknownActionIsNotOk) {
  Post(L"excelReadRange", LR"(,"range":"$A$1")");
  PumpMessages();
  Post(L"excelMakeCoffee");
  PumpMessages();
  EXPECT_EQ(panel.scripts, (std::vector{Reply(L"true", Error(L"range 参数缺失或无效")),
                                        Reply(L"false", Error(L"未知操作"))}));
}

TEST_F(PanelPath, RepliesAtOnceWithoutAHost) {
  target.ReleaseReferences();
  const TraceTail trace;
  Post(L"excelReadRange");
  EXPECT_EQ(panel.scripts, std::vector{Reply(L"true", Error(L"未连接到 Excel"))});
  EXPECT_TRUE(trace.Has(L"HandleAutofillMessage error: m_appDisp null\r\n"));
}

TEST_F(PanelPath, WaitsForAToolThatRuns) {
  std::vector<std::size_t> replies;
  tools->Dispatcher()->Turns().Run([&] {
    Post(L"excelPushUndoMarker");
    PumpMessages();
    replies.push_back(panel.scripts.size());
  });
  PumpMessages();
  replies.push_back(panel.scripts.size());
  EXPECT_EQ(replies, (std::vector<std::size_t>{0, 1}));
}

TEST_F(PanelPath, RepliesAtOnceWhenNothingCanBePosted) {
  pane->Tasks().Close();
  Post(L"excelReadRange", LR"(,"range":"A1")");
  EXPECT_EQ(panel.scripts, std::vector{Reply(L"true", Error(L"操作超时"))});
}

TEST_F(PanelPath, AResultThatIsTooLargeToBeCarriedIsAnError) {
  bool first = true;
  panel.onScript = [&] {
    if (std::exchange(first, false)) throw std::bad_alloc();
  };
  Post(L"excelReadRange", LR"(,"range":"A1")");
  PumpMessages();
  ASSERT_EQ(panel.scripts.size(), 2u);
  EXPECT_EQ(panel.scripts[1], Reply(L"true", Error(L"COM 异常")));
}

TEST_F(PanelPath, AClosedPaneChangesNothingAnyMore) {
  Post(L"excelWriteRange", LR"(,"range":"A1","values":[["x"]])");
  pane->MarkClosing();
  pane->Tasks().Close();
  PumpMessages();
  EXPECT_TRUE(panel.scripts.empty());
  EXPECT_EQ(CellAt("A1")["text"], "");
}

}  // namespace
}  // namespace qv::test
