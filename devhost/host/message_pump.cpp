#include "host/message_pump.h"

namespace qv::devhost {
namespace {

bool DispatchOne() {
  MSG message{};
  if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) return false;
  TranslateMessage(&message);
  DispatchMessageW(&message);
  return true;
}

}  // namespace

void DispatchWaitingMessages() {
  while (DispatchOne()) {
  }
}

bool PumpUntil(const std::function<bool()>& condition, DWORD timeoutMs) {
  const ULONGLONG deadline = GetTickCount64() + timeoutMs;
  while (!condition()) {
    if (DispatchOne()) continue;
    const ULONGLONG now = GetTickCount64();
    if (now >= deadline) return false;
    // INPUTAVAILABLE: a message that was seen before but not removed must wake it too.
    MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(deadline - now), QS_ALLINPUT,
                                MWMO_INPUTAVAILABLE);
  }
  return true;
}

}  // namespace qv::devhost
