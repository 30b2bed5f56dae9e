#include "tools/clipboard_backup.h"

#include <utility>

#include "foundation/guard.h"
#include "foundation/logging.h"

namespace qv {

ClipboardBackup::ClipboardBackup() {
  const OpenedClipboard clipboard(owner_.Get(), kClipboardTries);
  if (owner_.Get() == nullptr || !clipboard) return;
  for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format)) {
    if (auto item = ClipboardItem::Copy(format)) items_.push_back(std::move(*item));
  }
  taken_ = true;
  sequence_ = GetClipboardSequenceNumber();
}

ClipboardBackup::~ClipboardBackup() {
  if (taken_ && GetClipboardSequenceNumber() != sequence_) Guard(L"ClipboardBackup", [this] { Restore(); });
}

void ClipboardBackup::Restore() {
  const OpenedClipboard clipboard(owner_.Get(), kClipboardTries);
  if (!clipboard || !EmptyClipboard()) {
    PaneLog(L"ClipboardBackup: clipboard not restored\r\n");
    return;
  }
  for (ClipboardItem& item : items_) {
    if (!item.Put()) PaneLog(L"ClipboardBackup: a format not restored\r\n");
  }
}

}  // namespace qv
