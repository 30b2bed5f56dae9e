#pragma once

#include <windows.h>

#include <vector>

#include "foundation/opened_clipboard.h"
#include "tools/clipboard_item.h"

namespace qv {

/// What the clipboard held when this was made; put back at the end of its lifetime, unless the clipboard has
/// not changed since. Where another program holds the clipboard then, a worker puts it back later; no other
/// backup is taken until it has. One thread.
class ClipboardBackup {
 public:
  ClipboardBackup();
  ClipboardBackup(const ClipboardBackup&) = delete;
  ClipboardBackup& operator=(const ClipboardBackup&) = delete;
  ~ClipboardBackup();

  /// False when another program holds the clipboard, when something on it cannot be copied, and while an
  /// earlier backup is still to be put back: then the clipboard must be left alone.
  [[nodiscard]] bool IsTaken() const { return taken_; }
  /// What may open the clipboard meanwhile.
  [[nodiscard]] HWND Owner() const { return owner_.Get(); }

 private:
  [[nodiscard]] bool CopyAll();
  void Restore();

  ClipboardOwner owner_;
  bool taken_ = false;
  DWORD sequence_ = 0;
  std::vector<ClipboardItem> items_;
};

/// How many milliseconds the clipboard is waited for before it counts as held by somebody else.
inline constexpr DWORD kClipboardPatience = 200;

}  // namespace qv
