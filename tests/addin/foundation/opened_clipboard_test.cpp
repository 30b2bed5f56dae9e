#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <future>
#include <string>

#include "foundation/opened_clipboard.h"

namespace qv::test {
namespace {

HGLOBAL GlobalText(const wchar_t* text) {
  const size_t size = (std::wcslen(text) + 1) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  std::memcpy(GlobalLock(memory), text, size);
  GlobalUnlock(memory);
  return memory;
}

/// Delivers the text that was promised.
LRESULT CALLBACK Deliver(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_RENDERFORMAT) return DefWindowProcW(window, message, wparam, lparam);
  SetClipboardData(CF_UNICODETEXT, GlobalText(L"delivered"));
  return 0;
}

TEST(OpenedClipboard, WaitsWithoutKeepingTheHolderFromWhatThisThreadHasPromised) {
  const ClipboardOwner owner;
  SetWindowLongPtrW(owner.Get(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Deliver));
  {
    const OpenedClipboard clipboard(owner.Get(), 5000);
    ASSERT_TRUE(static_cast<bool>(clipboard));
    EmptyClipboard();
    SetClipboardData(CF_UNICODETEXT, nullptr);
  }
  std::promise<void> opened;
  std::future<std::wstring> pasted = std::async(std::launch::async, [&opened]() -> std::wstring {
    const ClipboardOwner window;
    const OpenedClipboard clipboard(window.Get(), 5000);
    opened.set_value();
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    if (data == nullptr) return L"nothing";
    std::wstring text = static_cast<const wchar_t*>(GlobalLock(data));
    GlobalUnlock(data);
    return text;
  });
  opened.get_future().wait();
  {
    const OpenedClipboard clipboard(owner.Get(), 1000);
    EXPECT_TRUE(static_cast<bool>(clipboard));
    if (clipboard) EmptyClipboard();
  }
  // Lets go of a holder that is still waiting.
  MSG none;
  while (pasted.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready)
    PeekMessageW(&none, nullptr, 0, 0, PM_NOREMOVE);
  EXPECT_EQ(pasted.get(), L"delivered");
}

TEST(OpenedClipboard, GivesUpInTheEnd) {
  const ClipboardOwner owner;
  std::promise<void> opened;
  std::promise<void> release;
  std::future<void> holder = std::async(std::launch::async, [&] {
    const ClipboardOwner window;
    const OpenedClipboard clipboard(window.Get(), 5000);
    opened.set_value();
    release.get_future().wait();
  });
  opened.get_future().wait();
  EXPECT_FALSE(static_cast<bool>(OpenedClipboard(owner.Get(), 50)));
  release.set_value();
  holder.get();
  EXPECT_TRUE(static_cast<bool>(OpenedClipboard(owner.Get())));
}

}  // namespace
}  // namespace qv::test
