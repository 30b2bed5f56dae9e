#include <thread>

#include "web_view_fixture.h"

namespace qv::test {
namespace {

class WebViewCreation : public WebViewTest {};

TEST_F(WebViewCreation, CompletesLaterOnTheSameThread) {
  Outcome<ICoreWebView2Environment> made;
  ASSERT_HRESULT_SUCCEEDED(CreateEnvironment(made));
  EXPECT_EQ(made.calls, 0);
  ASSERT_TRUE(PumpUntil([&] { return made.calls == 1; }, kPatienceMs));
  EXPECT_HRESULT_SUCCEEDED(made.result);
  EXPECT_EQ(made.thread, GetCurrentThreadId());
  environment_ = std::move(made.object);

  Outcome<ICoreWebView2Controller> controller;
  ASSERT_HRESULT_SUCCEEDED(CreateController(controller));
  EXPECT_EQ(controller.calls, 0);
  EXPECT_NE(GetWindow(parent_, GW_CHILD), nullptr);
  ASSERT_TRUE(PumpUntil([&] { return controller.calls == 1; }, kPatienceMs));
  EXPECT_EQ(controller.thread, GetCurrentThreadId());
  controller_ = std::move(controller.object);
}

TEST_F(WebViewCreation, FailsInTheThreeWaysThatAreAskedFor) {
  Outcome<ICoreWebView2Environment> atOnce;
  Control().FailNext(CreationStep::kEnvironment, CreationFailure::kAtOnce, E_ACCESSDENIED);
  EXPECT_EQ(CreateEnvironment(atOnce), E_ACCESSDENIED);

  Outcome<ICoreWebView2Environment> later;
  Control().FailNext(CreationStep::kEnvironment, CreationFailure::kLater, E_FAIL);
  ASSERT_HRESULT_SUCCEEDED(CreateEnvironment(later));
  ASSERT_TRUE(PumpUntil([&] { return later.calls == 1; }, kPatienceMs));
  EXPECT_EQ(later.result, E_FAIL);
  EXPECT_EQ(atOnce.calls, 0);

  ASSERT_NO_FATAL_FAILURE(OpenEnvironment());
  Outcome<ICoreWebView2Controller> empty;
  Control().FailNext(CreationStep::kController, CreationFailure::kWithoutObject, E_FAIL);
  ASSERT_HRESULT_SUCCEEDED(CreateController(empty));
  ASSERT_TRUE(PumpUntil([&] { return empty.calls == 1; }, kPatienceMs));
  EXPECT_EQ(empty.result, S_OK);
  EXPECT_EQ(empty.object.Get(), nullptr);
}

TEST_F(WebViewCreation, IsAbortedByTheLossOfTheParentWindow) {
  ASSERT_NO_FATAL_FAILURE(OpenEnvironment());
  Outcome<ICoreWebView2Controller> outcome;
  ASSERT_HRESULT_SUCCEEDED(CreateController(outcome));
  DestroyWindow(parent_);
  EXPECT_EQ(outcome.calls, 1);
  EXPECT_EQ(outcome.result, E_ABORT);
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(outcome.calls, 1);
}

TEST_F(WebViewCreation, WaitsForTheDelayAndKeepsTheOrder) {
  constexpr DWORD kDelayMs = 60;
  Control().SetDelay(kDelayMs);
  Outcome<ICoreWebView2Environment> slow;
  Outcome<ICoreWebView2Environment> quick;
  const ULONGLONG begin = GetTickCount64();
  ASSERT_HRESULT_SUCCEEDED(CreateEnvironment(slow));
  Control().SetDelay(0);
  ASSERT_HRESULT_SUCCEEDED(CreateEnvironment(quick));
  ASSERT_TRUE(PumpUntil([&] { return slow.calls == 1; }, kPatienceMs));
  EXPECT_EQ(quick.calls, 0);
  // The clock ticks every 10 to 16 ms.
  EXPECT_GE(GetTickCount64() - begin + 16, kDelayMs);
  ASSERT_TRUE(PumpUntil([&] { return quick.calls == 1; }, kPatienceMs));
}

TEST_F(WebViewCreation, RefusesAThreadWithoutASingleThreadedApartment) {
  HRESULT withoutCom = S_OK;
  HRESULT multiThreaded = S_OK;
  std::thread([&] {
    Outcome<ICoreWebView2Environment> outcome;
    withoutCom = CreateEnvironment(outcome);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    multiThreaded = CreateEnvironment(outcome);
    CoUninitialize();
  }).join();
  EXPECT_EQ(withoutCom, CO_E_NOTINITIALIZED);
  EXPECT_EQ(multiThreaded, RPC_E_CHANGED_MODE);
}

TEST_F(WebViewCreation, ComparesBrowserVersionsByNumber) {
  const auto compare = library_->Export<CompareBrowserVersionsFunction>("CompareBrowserVersions");
  const struct {
    const wchar_t* left;
    const wchar_t* right;
    int result;
  } cases[] = {
      {L"86.0.616.0", L"120.0.0.0", -1},
      {L"120.0.0.10", L"120.0.0.9", 1},
      {L"120.0.0.0 beta", L"120.0.0.0", 0},
  };
  for (const auto& entry : cases) {
    int result = 99;
    ASSERT_HRESULT_SUCCEEDED(compare(entry.left, entry.right, &result));
    EXPECT_EQ(result, entry.result);
  }
}

}  // namespace
}  // namespace qv::test
