#include "foundation/opened_clipboard.h"

namespace qv {
namespace {

/// Milliseconds between two tries.
constexpr DWORD kPause = 10;

/// Handles what other threads send, and nothing that is posted.
void WaitForSentMessages() {
  MsgWaitForMultipleObjectsEx(0, nullptr, kPause, QS_SENDMESSAGE, 0);
  MSG none;
  PeekMessageW(&none, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

}  // namespace

OpenedClipboard::OpenedClipboard(HWND owner, DWORD patience) : open_(OpenClipboard(owner) != FALSE) {
  const ULONGLONG start = GetTickCount64();
  while (!open_ && GetTickCount64() - start < patience) {
    WaitForSentMessages();
    open_ = OpenClipboard(owner) != FALSE;
  }
}

}  // namespace qv
