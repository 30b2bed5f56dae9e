#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "workbook/scan_progress.h"

namespace qv::test {
namespace {

std::vector<UINT>* received = nullptr;

LRESULT CALLBACK RecordingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_TIMER || message == WM_ERASEBKGND || message >= WM_APP) {
    received->push_back(message);
    return 1;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

/// Two windows of this thread that record what reaches them.
class ScanPump : public testing::Test {
 protected:
  void SetUp() override {
    received = &messages_;
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &RecordingProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"QvScanPumpTest";
    RegisterClassW(&windowClass);
    pane_ = CreateWindowExW(0, windowClass.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            windowClass.hInstance, nullptr);
    other_ = CreateWindowExW(0, windowClass.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                             windowClass.hInstance, nullptr);
    ASSERT_NE(pane_, nullptr);
    ASSERT_NE(other_, nullptr);
    Drain();
    messages_.clear();
  }
  void TearDown() override {
    Drain();
    DestroyWindow(pane_);
    DestroyWindow(other_);
  }
  static std::size_t Drain() {
    std::size_t count = 0;
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++count)
      DispatchMessageW(&message);
    return count;
  }

  std::vector<UINT> messages_;
  HWND pane_ = nullptr;
  HWND other_ = nullptr;
};

TEST_F(ScanPump, DispatchesRepaintsAndThePanesTimersUpToTheFirstOtherMessage) {
  PostMessageW(pane_, WM_TIMER, 1, 0);
  PostMessageW(other_, WM_ERASEBKGND, 0, 0);
  PostMessageW(pane_, WM_APP + 77, 0, 0);
  PostMessageW(pane_, WM_TIMER, 2, 0);
  PumpRepaints(pane_);
  EXPECT_EQ(messages_, (std::vector<UINT>{WM_TIMER, WM_ERASEBKGND}));
  // The task that stopped it and what followed still wait, in order.
  messages_.clear();
  EXPECT_EQ(Drain(), 2U);
  EXPECT_EQ(messages_, (std::vector<UINT>{WM_APP + 77, WM_TIMER}));
}

TEST_F(ScanPump, LeavesTheTimersOfOtherWindows) {
  PostMessageW(other_, WM_TIMER, 1, 0);
  PumpRepaints(pane_);
  PumpRepaints(nullptr);
  EXPECT_TRUE(messages_.empty());
  EXPECT_EQ(Drain(), 1U);
}

TEST_F(ScanPump, TakesAtMostSixtyFourMessages) {
  for (int i = 0; i < 70; ++i)
    PostMessageW(pane_, WM_TIMER, 1, 0);
  PumpRepaints(pane_);
  EXPECT_EQ(messages_.size(), 64U);
  EXPECT_EQ(Drain(), 6U);
}

}  // namespace
}  // namespace qv::test
