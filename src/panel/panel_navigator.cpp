#include "panel/panel_navigator.h"

#include <utility>

#include "foundation/host_session.h"
#include "foundation/settings.h"
#include "panel/own_page.h"

namespace qv {
namespace {

/// A page that lasts shorter is given up when it loses its process again.
constexpr ULONGLONG kShortestLifeMs = 60'000;

}  // namespace

void PanelNavigator::NavigateToPage(std::wstring_view page, std::wstring_view mode,
                                    std::wstring_view surface) {
  currentMode_ = mode;
  surface_ = surface;
  if (!view_.IsReady()) {
    pendingPage_ = page;
    return;
  }
  if (loading_) pendingPage_ = page;
  currentPage_ = page;
  loading_ = true;
  loaded_ = false;
  const bool begun = view_.Navigate(BuildPanelUrl({.origin = HostSession::Get().Endpoint().Origin(),
                                                   .page = currentPage_,
                                                   .mode = currentMode_,
                                                   .surface = surface_,
                                                   .tick = GetTickCount64(),
                                                   .wps = IsWpsProcess(),
                                                   .paneNumber = context_.Number(),
                                                   .uiLang = GetUiLanguage()}));
  if (!begun) OnNavigationFailed();
}

void PanelNavigator::OnViewReady() {
  const std::wstring requested = std::exchange(pendingPage_, {});
  NavigateToPage(requested.empty() ? std::wstring(kRootPage) : requested, std::wstring(currentMode_),
                 std::wstring(surface_));
}

void PanelNavigator::TakePageBack() {
  loading_ = false;
  const std::wstring shown = ShowsOwnPage(view_) ? PanelPageFromUrl(view_.Source()) : std::wstring();
  loaded_ = !shown.empty();
  if (loaded_) currentPage_ = shown;
}

bool PanelNavigator::IsShowing(std::wstring_view page) const {
  return loaded_ && !loading_ && pendingPage_.empty() && currentPage_ == page;
}

bool PanelNavigator::ShowPendingPage() {
  // Taken once: a server that answers a page with another one must not be asked for ever.
  const std::wstring requested = std::exchange(pendingPage_, {});
  if (requested.empty() || requested == currentPage_) return true;
  NavigateToPage(requested, std::wstring(currentMode_), std::wstring(surface_));
  return false;
}

bool PanelNavigator::Reload() {
  const ULONGLONG now = GetTickCount64();
  const ULONGLONG before = std::exchange(lastLoss_, now);
  if (before != 0 && now - before < kShortestLifeMs) return false;
  NavigateToPage(std::wstring(currentPage_), std::wstring(currentMode_), surface_);
  return true;
}

void PanelNavigator::OnNavigationFailed() {
  loading_ = false;
  loaded_ = false;
  pendingPage_.clear();
}

}  // namespace qv
