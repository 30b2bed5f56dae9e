#include "workbook/scan_progress.h"

#include "foundation/text.h"

namespace qv {
namespace {

constexpr int kMaxPumped = 64;
constexpr std::int64_t kRowsPerReport = 16;
/// A look into the message queue costs more than scanning 16 rows; nobody sees repaints that come faster than
/// this.
constexpr ULONGLONG kPumpIntervalMs = 10;

bool MayDispatch(const MSG& message, HWND pane) {
  switch (message.message) {
    case WM_PAINT:
    case WM_ERASEBKGND:
      return true;
    case WM_TIMER:
      return pane != nullptr && message.hwnd == pane;
    default:
      return false;
  }
}

}  // namespace

void PumpRepaints(HWND pane) {
  for (int i = 0; i < kMaxPumped; ++i) {
    // Looked at first, because a message that was taken cannot be put back in its place.
    MSG next{};
    if (!PeekMessageW(&next, nullptr, 0, 0, PM_NOREMOVE) || !MayDispatch(next, pane)) return;
    MSG taken{};
    if (!PeekMessageW(&taken, next.hwnd, next.message, next.message, PM_REMOVE)) return;
    DispatchMessageW(&taken);
  }
}

bool ScanProgress::BeginRow(std::int32_t row) {
  const std::int64_t current = rowsBefore_ + row;
  const bool due = current == 1 || current == totalRows_ || current % kRowsPerReport == 0;
  if (runId_ != 0 && due) {
    // Run directly: a posted script would wait behind the scan, and stop the pump.
    output_.RunPanelScript(Concat(L"if(window.onScanProgress)onScanProgress({runId:", runId_, L",current:",
                                  current, L",total:", totalRows_, L"})"));
    PumpNowAndThen();
  }
  return IsWanted();
}

void ScanProgress::PumpNowAndThen() {
  const ULONGLONG now = GetTickCount64();
  if (lastPump_ != 0 && now - lastPump_ < kPumpIntervalMs) return;
  PumpRepaints(pane_.Window());
  // Counted from the end of the repaints, so that slow ones do not take all the time there is.
  lastPump_ = GetTickCount64();
}

}  // namespace qv
