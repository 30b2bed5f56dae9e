#pragma once

#include <gtest/gtest.h>
#include <objbase.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "callback.h"
#include "host/message_pump.h"
#include "host/web_view_library.h"
#include "host/windows_path.h"

namespace qv::test {

using devhost::CreationFailure;
using devhost::CreationStep;
using devhost::PageItem;
using devhost::PageItemKind;
using devhost::PumpUntil;

using EnvironmentHandler = ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler;
using ControllerHandler = ICoreWebView2CreateCoreWebView2ControllerCompletedHandler;

inline constexpr DWORD kPatienceMs = 10'000;

/// Takes over a text that is freed with CoTaskMemFree.
inline std::wstring TakeText(LPWSTR text) {
  std::wstring copy(text ? text : L"");
  CoTaskMemFree(text);
  return copy;
}

/// What a completion brought.
template <typename Object>
struct Outcome {
  int calls = 0;
  HRESULT result = E_PENDING;
  ComPtr<Object> object;
  DWORD thread = 0;
};

/// The stand-in, a parent window and, after `Open`, a web view in it. Nothing may be alive at the end.
class WebViewTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    library_ = std::make_unique<devhost::WebViewLibrary>(devhost::ProgramFolder());
    parent_ = CreateWindowW(L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr, nullptr,
                            nullptr);
    ASSERT_NE(parent_, nullptr);
  }

  void TearDown() override {
    if (controller_) {
      EXPECT_HRESULT_SUCCEEDED(controller_->Close());
    }
    view_.Reset();
    controller_.Reset();
    environment_.Reset();
    devhost::DispatchWaitingMessages();
    EXPECT_EQ(Control().LiveObjects(), 0u);
    Control().ResetBehaviour();
    if (IsWindow(parent_)) DestroyWindow(parent_);
    library_.reset();
    CoUninitialize();
  }

  [[nodiscard]] devhost::WebViewControl& Control() const { return library_->Control(); }

  [[nodiscard]] HRESULT CreateEnvironment(Outcome<ICoreWebView2Environment>& outcome) {
    const auto create = library_->Export<CreateCoreWebView2EnvironmentWithOptionsFunction>(
        "CreateCoreWebView2EnvironmentWithOptions");
    const auto handler =
        MakeCallback<EnvironmentHandler>([&outcome](HRESULT hr, ICoreWebView2Environment* made) {
          ++outcome.calls;
          outcome.result = hr;
          outcome.object = made;
          outcome.thread = GetCurrentThreadId();
        });
    return create(nullptr, L"C:\\profile", nullptr, handler.Get());
  }

  [[nodiscard]] HRESULT CreateController(Outcome<ICoreWebView2Controller>& outcome) {
    const auto handler =
        MakeCallback<ControllerHandler>([&outcome](HRESULT hr, ICoreWebView2Controller* made) {
          ++outcome.calls;
          outcome.result = hr;
          outcome.object = made;
          outcome.thread = GetCurrentThreadId();
        });
    return environment_->CreateCoreWebView2Controller(parent_, handler.Get());
  }

  void OpenEnvironment() {
    Outcome<ICoreWebView2Environment> outcome;
    ASSERT_HRESULT_SUCCEEDED(CreateEnvironment(outcome));
    ASSERT_TRUE(PumpUntil([&] { return outcome.calls == 1; }, kPatienceMs));
    environment_ = outcome.object;
    ASSERT_TRUE(environment_);
  }

  void Open() {
    ASSERT_NO_FATAL_FAILURE(OpenEnvironment());
    Outcome<ICoreWebView2Controller> outcome;
    ASSERT_HRESULT_SUCCEEDED(CreateController(outcome));
    ASSERT_TRUE(PumpUntil([&] { return outcome.calls == 1; }, kPatienceMs));
    controller_ = outcome.object;
    ASSERT_TRUE(controller_);
    ASSERT_HRESULT_SUCCEEDED(controller_->get_CoreWebView2(view_.GetAddressOf()));
  }

  /// Writes "starting URI" and "completed SUCCESS STATUS" into `events_`; cancels what contains `cancelled`.
  void ListenToNavigation(const std::wstring& cancelled = L"(none)") {
    EventRegistrationToken token{};
    const auto starting = MakeCallback<ICoreWebView2NavigationStartingEventHandler>(
        [this, cancelled](ICoreWebView2*, ICoreWebView2NavigationStartingEventArgs* args) {
          LPWSTR uri = nullptr;
          ASSERT_HRESULT_SUCCEEDED(args->get_Uri(&uri));
          events_.push_back(L"starting " + TakeText(uri));
          if (events_.back().find(cancelled) != std::wstring::npos) {
            ASSERT_HRESULT_SUCCEEDED(args->put_Cancel(TRUE));
          }
        });
    const auto completed = MakeCallback<ICoreWebView2NavigationCompletedEventHandler>(
        [this](ICoreWebView2*, ICoreWebView2NavigationCompletedEventArgs* args) {
          BOOL success = FALSE;
          COREWEBVIEW2_WEB_ERROR_STATUS status{};
          ASSERT_HRESULT_SUCCEEDED(args->get_IsSuccess(&success));
          ASSERT_HRESULT_SUCCEEDED(args->get_WebErrorStatus(&status));
          events_.push_back(L"completed " + std::to_wstring(success) + L" " + std::to_wstring(status));
        });
    ASSERT_HRESULT_SUCCEEDED(view_->add_NavigationStarting(starting.Get(), &token));
    ASSERT_HRESULT_SUCCEEDED(view_->add_NavigationCompleted(completed.Get(), &token));
  }

  [[nodiscard]] bool WaitForEvents(std::size_t count) {
    return PumpUntil([&] { return events_.size() >= count; }, kPatienceMs);
  }

  [[nodiscard]] std::uint32_t ViewNumber() const {
    const auto views = library_->ViewsIn(parent_);
    return views.empty() ? 0 : views.front().view;
  }

  std::unique_ptr<devhost::WebViewLibrary> library_;
  HWND parent_ = nullptr;
  ComPtr<ICoreWebView2Environment> environment_;
  ComPtr<ICoreWebView2Controller> controller_;
  ComPtr<ICoreWebView2> view_;
  std::vector<std::wstring> events_;
};

}  // namespace qv::test
