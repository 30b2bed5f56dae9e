#include "addin/welcome.h"

#include <windows.h>

#include "addin/host_message.h"
#include "addin/ribbon_tab.h"
#include "addin/welcome_values.h"
#include "foundation/catalog.h"
#include "foundation/flag_scope.h"
#include "foundation/host_session.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "foundation/variant.h"
#include "workbook/automation.h"

namespace qv {
namespace {

/// The top-level window of the document that the user works on; null without one. WPS gives a child of it.
HWND ActiveHostWindow() {
  const ComPtr<IDispatch> window = GetDispProperty(HostSession::Get().Application().Get(), L"ActiveWindow");
  const std::intptr_t handle = GetIntProperty(window.Get(), L"Hwnd");
  return GetAncestor(reinterpret_cast<HWND>(handle), GA_ROOT);
}

HostWindowFacts FactsOf(HWND host) {
  const HWND foreground = GetForegroundWindow();
  return {.isWindow = IsWindow(host) != FALSE,
          .isVisible = IsWindowVisible(host) != FALSE,
          .isMinimised = IsIconic(host) != FALSE,
          .hasForeground = foreground != nullptr,
          .sharesThread =
              GetWindowThreadProcessId(foreground, nullptr) == GetWindowThreadProcessId(host, nullptr),
          .isForegroundRoot = GetAncestor(foreground, GA_ROOT) == host};
}

void BringToFront(HWND host) {
  if (IsIconic(host)) ShowWindow(host, SW_RESTORE);
  SetForegroundWindow(host);
  SetActiveWindow(host);
  BringWindowToTop(host);
}

void OpenLogin(HWND host, const std::wstring& hostText, const std::function<bool()>& showLogin) {
  BringToFront(host);
  ActivateRibbonTab(host);
  // Another instance of the host may have asked meanwhile.
  if (!IsWelcomeDue() || !showLogin()) return;
  MarkWelcomeShown(hostText);
  SendBeacon(L"welcome:shown", L"client");
}

void Offer(const std::function<bool()>& showLogin) {
  if (!IsWelcomeDue()) return;
  PaneLog(L"Excel ShowFirstRunWelcome\r\n");
  const HWND host = ActiveHostWindow();
  if (!IsInFront(FactsOf(host))) return;
  const std::wstring hostText = HostKindText(HostSession::Get().Kind());
  const int answer = ShowMessage(host, GetCatalogText(L"msg.welcome.body"), MB_YESNO | MB_ICONINFORMATION);
  if (answer == IDYES) OpenLogin(host, hostText, showLogin);
  if (answer == IDNO) MarkWelcomeShown(hostText);
}

}  // namespace

void ShowFirstRunWelcome(const std::function<bool()>& showLogin) {
  static bool open = false;
  if (open) return;
  const FlagScope scope(open);
  Offer(showLogin);
}

}  // namespace qv
