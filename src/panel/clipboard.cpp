#include "panel/clipboard.h"

#include <windows.h>

#include <cstring>

#include "foundation/module.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

struct GlobalTraits {
  using Type = HGLOBAL;
  static Type None() { return nullptr; }
  static void Close(Type handle) { GlobalFree(handle); }
};

struct WindowTraits {
  using Type = HWND;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DestroyWindow(handle); }
};

class OpenedClipboard {
 public:
  explicit OpenedClipboard(HWND owner) : open_(OpenClipboard(owner) != FALSE) {}
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;
  ~OpenedClipboard() {
    if (open_) CloseClipboard();
  }
  [[nodiscard]] explicit operator bool() const { return open_; }

 private:
  bool open_;
};

}  // namespace

void CopyTextToClipboard(std::wstring_view text) {
  UniqueHandle<GlobalTraits> memory(GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t)));
  if (!memory) return;
  auto* const target = static_cast<wchar_t*>(GlobalLock(memory.Get()));
  if (target == nullptr) return;
  std::memcpy(target, text.data(), text.size() * sizeof(wchar_t));
  target[text.size()] = L'\0';
  GlobalUnlock(memory.Get());

  // A window of the host would get the clipboard's messages, and without an owner nothing can be put in. The
  // text outlives its owner.
  const UniqueHandle<WindowTraits> owner(
      CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, ThisModule(), nullptr));
  if (!owner) return;
  const OpenedClipboard clipboard(owner.Get());
  if (!clipboard || !EmptyClipboard()) return;
  // The clipboard owns the memory only once it has accepted it.
  if (SetClipboardData(CF_UNICODETEXT, memory.Get()) != nullptr) static_cast<void>(memory.Detach());
}

}  // namespace qv
