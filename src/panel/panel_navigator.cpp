#include "panel/panel_navigator.h"

#include <utility>

#include "foundation/host_session.h"
#include "foundation/settings.h"

namespace qv {

void PanelNavigator::NavigateToPage(std::wstring_view page, std::wstring_view mode,
                                    std::wstring_view surface) {
  currentMode_ = mode;
  if (!view_.IsReady()) {
    pendingPage_ = page;
    return;
  }
  if (loading_) pendingPage_ = page;
  currentPage_ = page;
  loading_ = true;
  loaded_ = false;
  view_.Navigate(BuildPanelUrl({.origin = HostSession::Get().Endpoint().Origin(),
                                .page = currentPage_,
                                .mode = currentMode_,
                                .surface = std::wstring(surface),
                                .tick = GetTickCount64(),
                                .wps = IsWpsProcess(),
                                .paneNumber = context_.Number(),
                                .uiLang = GetUiLanguage()}));
}

void PanelNavigator::OnViewReady() {
  const std::wstring requested = std::exchange(pendingPage_, {});
  NavigateToPage(requested.empty() ? std::wstring(kRootPage) : requested, std::wstring(currentMode_), {});
}

void PanelNavigator::TakePageBack() {
  loading_ = false;
  reloading_ = false;
  const std::wstring shown = PanelPageFromUrl(view_.Source());
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
  NavigateToPage(requested, std::wstring(currentMode_), {});
  return false;
}

bool PanelNavigator::Reload() {
  if (std::exchange(reloading_, true)) return false;
  NavigateToPage(std::wstring(currentPage_), std::wstring(currentMode_), {});
  return true;
}

void PanelNavigator::OnNavigationFailed() {
  loading_ = false;
  loaded_ = false;
  pendingPage_.clear();
}

}  // namespace qv
