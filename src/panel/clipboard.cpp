#include "panel/clipboard.h"

#include <cstring>

#include "foundation/unique_handle.h"

namespace qv {
namespace {

struct GlobalTraits {
  using Type = HGLOBAL;
  static Type None() { return nullptr; }
  static void Close(Type handle) { GlobalFree(handle); }
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

void CopyTextToClipboard(HWND owner, std::wstring_view text) {
  UniqueHandle<GlobalTraits> memory(GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t)));
  if (!memory) return;
  auto* const target = static_cast<wchar_t*>(GlobalLock(memory.Get()));
  if (target == nullptr) return;
  std::memcpy(target, text.data(), text.size() * sizeof(wchar_t));
  target[text.size()] = L'\0';
  GlobalUnlock(memory.Get());

  const OpenedClipboard clipboard(owner);
  if (!clipboard || !EmptyClipboard()) return;
  // The clipboard owns the memory only once it has accepted it.
  if (SetClipboardData(CF_UNICODETEXT, memory.Get()) != nullptr) static_cast<void>(memory.Detach());
}

}  // namespace qv
