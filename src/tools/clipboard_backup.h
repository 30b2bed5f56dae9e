#pragma once

#include <windows.h>

#include <vector>

#include "foundation/opened_clipboard.h"
#include "tools/clipboard_item.h"

namespace qv {

/// What the clipboard held when this was made; put back at the end of its lifetime, unless the clipboard has
/// not changed since. One thread.
class ClipboardBackup {
 public:
  ClipboardBackup();
  ClipboardBackup(const ClipboardBackup&) = delete;
  ClipboardBackup& operator=(const ClipboardBackup&) = delete;
  ~ClipboardBackup();

  /// False when another program holds the clipboard: then it must be left alone.
  [[nodiscard]] bool IsTaken() const { return taken_; }
  /// What may open the clipboard meanwhile.
  [[nodiscard]] HWND Owner() const { return owner_.Get(); }

 private:
  void Restore();

  ClipboardOwner owner_;
  bool taken_ = false;
  DWORD sequence_ = 0;
  std::vector<ClipboardItem> items_;
};

/// How often the clipboard is asked for before it counts as held by somebody else.
inline constexpr int kClipboardTries = 20;

}  // namespace qv
