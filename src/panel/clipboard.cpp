#include "panel/clipboard.h"

#include <cstring>

#include "foundation/opened_clipboard.h"

namespace qv {

void CopyTextToClipboard(std::wstring_view text) {
  UniqueGlobal memory(GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t)));
  if (!memory) return;
  auto* const target = static_cast<wchar_t*>(GlobalLock(memory.Get()));
  if (target == nullptr) return;
  std::memcpy(target, text.data(), text.size() * sizeof(wchar_t));
  target[text.size()] = L'\0';
  GlobalUnlock(memory.Get());

  const ClipboardOwner owner;
  if (owner.Get() == nullptr) return;
  const OpenedClipboard clipboard(owner.Get());
  if (!clipboard || !EmptyClipboard()) return;
  // The clipboard owns the memory only once it has accepted it.
  if (SetClipboardData(CF_UNICODETEXT, memory.Get()) != nullptr) static_cast<void>(memory.Detach());
}

}  // namespace qv
