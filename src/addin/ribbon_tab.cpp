#include "addin/ribbon_tab.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "addin/ribbon_tab_search.h"
#include "foundation/catalog.h"
#include "foundation/guard.h"
#include "foundation/logging.h"

namespace qv {
namespace {

/// Classes of the windows that draw a ribbon: Office's, and Qt's in WPS.
constexpr std::wstring_view kRibbonClasses[] = {L"NetUIHWND", L"NetUIRibbonFrame", L"QWidget"};
constexpr std::wstring_view kRibbonName = L"Ribbon";
/// Panes and dialogs draw with the same classes, so there may be many such windows.
constexpr std::size_t kMaxWindows = 64;

bool MayHoldRibbon(HWND window) {
  std::array<wchar_t, 64> text{};
  GetClassNameW(window, text.data(), static_cast<int>(text.size()));
  if (std::ranges::find(kRibbonClasses, std::wstring_view(text.data())) != std::end(kRibbonClasses))
    return true;
  // Only asks for what the system keeps: no message goes to a window that may hang.
  return InternalGetWindowText(window, text.data(), static_cast<int>(text.size())) > 0 &&
         std::wstring_view(text.data()) == kRibbonName;
}

BOOL CALLBACK CollectWindow(HWND window, LPARAM list) noexcept {
  auto& windows = *reinterpret_cast<std::vector<HWND>*>(list);
  Guard(L"CollectWindow", [&] {
    if (IsWindowVisible(window) && MayHoldRibbon(window)) windows.push_back(window);
  });
  return windows.size() < kMaxWindows;
}

std::vector<HWND> RibbonWindows(HWND host) {
  std::vector<HWND> windows;
  if (MayHoldRibbon(host)) windows.push_back(host);
  EnumChildWindows(host, &CollectWindow, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

using Activation = bool (*)(HWND, const std::wstring&, SearchBudget&);

bool ActivateInAny(const std::vector<HWND>& windows, const std::wstring& label, Activation activate) {
  SearchBudget budget;
  return std::ranges::any_of(windows, [&](HWND window) { return activate(window, label, budget); });
}

const wchar_t* Outcome(HWND host) {
  if (GetAncestor(GetForegroundWindow(), GA_ROOT) != host)
    return L"ActivateRibbonTab skip: host not foreground\r\n";
  const std::wstring label = GetCatalogText(L"ribbon.tabQuorvantis");
  const std::vector<HWND> windows = RibbonWindows(host);
  if (ActivateInAny(windows, label, &ActivateTabByAccessibility)) return L"ActivateRibbonTab OK (acc)\r\n";
  if (ActivateInAny(windows, label, &ActivateTabByAutomation)) return L"ActivateRibbonTab OK (uia)\r\n";
  return L"ActivateRibbonTab miss\r\n";
}

}  // namespace

void ActivateRibbonTab(HWND host) {
  PaneLog(Outcome(host));
}

}  // namespace qv
