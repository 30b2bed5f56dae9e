#pragma once

#include <string>
#include <string_view>

#include "foundation/pane_context.h"
#include "panel/page_url.h"
#include "panel/web_view.h"

namespace qv {

/// Which page of the panel a pane shows. Remembers a request that comes before the browser is ready or while
/// another page loads. UI thread.
class PanelNavigator {
 public:
  /// Both outlive the navigator.
  PanelNavigator(PaneContext& context, WebView& view) : context_(context), view_(view) {}

  /// Shows a page; `mode` is "full", "selection" or empty, `surface` is empty for the pane itself.
  void NavigateToPage(std::wstring_view page, std::wstring_view mode, std::wstring_view surface);

  /// The view can navigate now: shows the page asked for meanwhile, else the root.
  void OnViewReady();

  /// A page was loaded: its name becomes the current one when it is a page of the panel.
  void TakePageBack();

  /// Loads the page that was asked for while the last one loaded, if it is another one. False when it is
  /// loading now.
  [[nodiscard]] bool ShowPendingPage();

  /// Loads the current page again after its process was lost. False when that was tried before and no page
  /// has come since: a page that takes its process down is not tried for ever.
  [[nodiscard]] bool Reload();

  /// A page could not be loaded; nothing is tried again.
  void OnNavigationFailed();

  [[nodiscard]] const std::wstring& CurrentPage() const { return currentPage_; }

  /// Whether this page is loaded and nothing else was asked for since, so that it can be talked to.
  [[nodiscard]] bool IsShowing(std::wstring_view page) const;

  /// The loaded page was told another mode.
  void SetMode(std::wstring_view mode) { currentMode_ = mode; }

 private:
  PaneContext& context_;
  WebView& view_;
  std::wstring currentPage_{kRootPage};
  std::wstring currentMode_;
  /// Asked for before the view was ready or while another page was loading.
  std::wstring pendingPage_;
  bool loading_ = false;
  /// The surface that the pages are told of; empty for the pane itself.
  std::wstring surface_;
  /// Milliseconds since system start of the last loss, 0 for none.
  ULONGLONG lastLoss_ = 0;
  /// The current page is one of the panel and was loaded.
  bool loaded_ = false;
};

}  // namespace qv
