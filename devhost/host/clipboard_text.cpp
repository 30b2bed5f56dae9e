#include "host/clipboard_text.h"

#include <windows.h>

#include <cstring>

namespace qv::devhost {
namespace {

HGLOBAL GlobalCopy(const std::wstring& text) {
  const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
  void* const target = memory == nullptr ? nullptr : GlobalLock(memory);
  if (target == nullptr) return memory;
  std::memcpy(target, text.c_str(), bytes);
  GlobalUnlock(memory);
  return memory;
}

std::optional<std::wstring> TextIn(HANDLE memory) {
  const auto* const text = memory == nullptr ? nullptr : static_cast<const wchar_t*>(GlobalLock(memory));
  if (text == nullptr) return {};
  std::wstring copy(text, wcsnlen(text, GlobalSize(memory) / sizeof(wchar_t)));
  GlobalUnlock(memory);
  return copy;
}

}  // namespace

std::optional<std::wstring> ClipboardText() {
  if (!OpenClipboard(nullptr)) return {};
  auto text = TextIn(GetClipboardData(CF_UNICODETEXT));
  CloseClipboard();
  return text;
}

bool PutClipboardText(const std::wstring& text) {
  // Without a window to own it, nothing can be put there.
  const HWND owner =
      CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  bool done = false;
  if (OpenClipboard(owner)) {
    const HGLOBAL memory = EmptyClipboard() ? GlobalCopy(text) : nullptr;
    done = memory != nullptr && SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    if (!done) GlobalFree(memory);
    CloseClipboard();
  }
  DestroyWindow(owner);
  return done;
}

}  // namespace qv::devhost
