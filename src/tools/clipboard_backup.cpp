#include "tools/clipboard_backup.h"

#include <atomic>
#include <memory>
#include <optional>
#include <utility>

#include "foundation/guard.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/worker_thread.h"

namespace qv {
namespace {

/// Milliseconds that putting back waits on the caller's thread, and then on a worker.
constexpr DWORD kRestorePatience = 1000;
constexpr DWORD kLatePatience = 60'000;

/// A worker still has a backup to put back.
std::atomic<bool> restoringLate{false};

/// Into the open clipboard.
void PutBack(std::vector<ClipboardItem>& items) {
  if (!EmptyClipboard()) {
    PaneLog(L"ClipboardBackup: clipboard not restored\r\n");
    return;
  }
  for (ClipboardItem& item : items) {
    if (!item.Put()) PaneLog(L"ClipboardBackup: a format not restored\r\n");
  }
}

/// On a worker. What somebody has copied since goes before what was there earlier.
void PutBackLate(std::vector<ClipboardItem>& items, DWORD sequence) {
  const ClipboardOwner owner;
  const OpenedClipboard clipboard(owner.Get(), kLatePatience);
  if (owner.Get() == nullptr || !clipboard || GetClipboardSequenceNumber() != sequence) {
    PaneLog(L"ClipboardBackup: clipboard not restored\r\n");
    return;
  }
  PutBack(items);
}

}  // namespace

ClipboardBackup::ClipboardBackup() {
  if (restoringLate) return;
  const OpenedClipboard clipboard(owner_.Get(), kClipboardPatience);
  taken_ = owner_.Get() != nullptr && clipboard && CopyAll();
  sequence_ = GetClipboardSequenceNumber();
}

bool ClipboardBackup::CopyAll() {
  for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format)) {
    if (ClipboardItem::IsOwnersOwn(format)) continue;
    const HANDLE source = GetClipboardData(format);
    // An owner that does not deliver what it has promised delivers it to nobody.
    if (source == nullptr) continue;
    std::optional<ClipboardItem> item = ClipboardItem::Copy(format, source);
    if (!item) {
      PaneLog(Concat(L"ClipboardBackup: format ", format, L" not copied\r\n"));
      return false;
    }
    items_.push_back(std::move(*item));
  }
  return true;
}

ClipboardBackup::~ClipboardBackup() {
  if (taken_ && GetClipboardSequenceNumber() != sequence_) Guard(L"ClipboardBackup", [this] { Restore(); });
}

void ClipboardBackup::Restore() {
  {
    const OpenedClipboard clipboard(owner_.Get(), kRestorePatience);
    if (clipboard) return PutBack(items_);
  }
  const auto items = std::make_shared<std::vector<ClipboardItem>>(std::move(items_));
  restoringLate = true;
  const bool started =
      StartDetachedWorker(L"ClipboardBackup", [items, sequence = GetClipboardSequenceNumber()] {
        Guard(L"ClipboardBackup", [&] { PutBackLate(*items, sequence); });
        restoringLate = false;
      });
  if (started) return;
  restoringLate = false;
  PaneLog(L"ClipboardBackup: clipboard not restored\r\n");
}

}  // namespace qv
