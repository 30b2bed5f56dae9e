#include "webview2/chromium/chromium_source.h"

#include "webview2/chromium/chromium_page.h"
#include "webview2/chromium/page_script.h"

namespace qv::devhost {
namespace {

/// A page on its way, step by step, each begun by the answer to the one before. It keeps the queue and with
/// it the thread's own end of all answers.
class Opening : public std::enable_shared_from_this<Opening> {
 public:
  Opening(std::shared_ptr<Browser> browser, std::shared_ptr<CompletionQueue> queue,
          PageSource::PageReady ready)
      : browser_(std::move(browser)), queue_(std::move(queue)), ready_(std::move(ready)) {}

  void Begin() {
    // In a window of its own every page counts as seen and focused.
    Call("Target.createTarget", {{"url", "about:blank"}, {"newWindow", true}}, [this](const Json& result) {
      target_ = result.at("targetId").get<std::string>();
      Attach();
    });
  }

 private:
  template <typename Step>
  void Call(const char* method, Json parameters, Step step) {
    browser_->Client().Call("", method, std::move(parameters), queue_->ForOtherThreads(),
                            [self = shared_from_this(), step](HRESULT hr, const Json& result) {
                              if (FAILED(hr)) return self->ready_(hr, nullptr);
                              step(result);
                            });
  }

  void Attach() {
    Call("Target.attachToTarget", {{"targetId", target_}, {"flatten", true}}, [this](const Json& result) {
      link_ =
          std::make_shared<PageLink>(browser_, queue_, target_, result.at("sessionId").get<std::string>());
      Prepare();
    });
  }

  void Prepare() {
    link_->Tell("Page.enable");
    link_->Tell("Page.setLifecycleEventsEnabled", {{"enabled", true}});
    link_->Tell("Network.enable");
    link_->Tell("Runtime.enable");
    link_->Tell("Runtime.addBinding", {{"name", kPostBinding}});
    link_->Tell("Page.addScriptToEvaluateOnNewDocument", {{"source", kPageScript}, {"runImmediately", true}});
    // The last command: once it is answered, all are done.
    link_->Call("Runtime.evaluate", {{"expression", "0"}},
                [self = shared_from_this()](HRESULT hr, const Json&) { self->Finish(hr); });
  }

  void Finish(HRESULT result) {
    if (FAILED(result)) return ready_(result, nullptr);
    ready_(S_OK, [link = link_](PageEvents& events, ViewWindow& window) {
      return ChromiumPage::Bind(link, events, window);
    });
  }

  std::shared_ptr<Browser> browser_;
  std::shared_ptr<CompletionQueue> queue_;
  PageSource::PageReady ready_;
  std::string target_;
  std::shared_ptr<PageLink> link_;
};

}  // namespace

void ChromiumSource::Open(const BrowserOptions& options, std::shared_ptr<CompletionQueue> queue,
                          Opened opened) {
  const auto browser = Browser::ForOptions(options);
  const auto entrance = queue->ForOtherThreads();
  browser->WhenReady(entrance, [browser, queue = std::move(queue), opened = std::move(opened)](HRESULT hr) {
    if (FAILED(hr)) return opened(hr, nullptr);
    opened(S_OK, std::make_unique<ChromiumSource>(browser, queue));
  });
}

HRESULT ChromiumSource::PreparePage(PageReady ready) {
  if (!browser_->IsRunning()) return HRESULT_FROM_WIN32(ERROR_INVALID_STATE);
  std::make_shared<Opening>(browser_, queue_, std::move(ready))->Begin();
  return S_OK;
}

}  // namespace qv::devhost
