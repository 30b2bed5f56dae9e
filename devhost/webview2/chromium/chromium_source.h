#pragma once

#include <functional>
#include <memory>

#include "webview2/chromium/browser.h"
#include "webview2/page_backend.h"

namespace qv::devhost {

/// The pages of one environment in a real browser.
class ChromiumSource final : public PageSource {
 public:
  using Opened = std::function<void(HRESULT, std::unique_ptr<PageSource>)>;

  /// Starts the browser, unless it runs already; `opened` is called later with the source, or why there is
  /// none.
  static void Open(const BrowserOptions& options, std::shared_ptr<CompletionQueue> queue, Opened opened);

  ChromiumSource(std::shared_ptr<Browser> browser, std::shared_ptr<CompletionQueue> queue)
      : browser_(std::move(browser)), queue_(std::move(queue)) {}

  HRESULT PreparePage(PageReady ready) override;

 private:
  std::shared_ptr<Browser> browser_;
  std::shared_ptr<CompletionQueue> queue_;
};

}  // namespace qv::devhost
