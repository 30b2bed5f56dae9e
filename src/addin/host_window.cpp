#include "addin/host_window.h"

#include "foundation/host_session.h"
#include "workbook/automation.h"

namespace qv {
namespace {

HWND HostFrame() {
  const HWND frame = GetAncestor(ApplicationWindow(), GA_ROOT);
  DWORD process = 0;
  GetWindowThreadProcessId(frame, &process);
  // A handle of another process would be a stale number, and must not be disabled for a dialog of ours.
  return process == GetCurrentProcessId() ? frame : nullptr;
}

}  // namespace

HWND ApplicationWindow() {
  const auto handle =
      static_cast<HWND>(LongToHandle(GetIntProperty(HostSession::Get().Application().Get(), L"Hwnd")));
  return IsWindow(handle) ? handle : nullptr;
}

HWND BoxOwner() {
  const HWND frame = HostFrame();
  return frame != nullptr ? frame : GetActiveWindow();
}

}  // namespace qv
