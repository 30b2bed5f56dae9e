#include "webview2/chromium/page_link.h"

namespace qv::devhost {

PageLink::PageLink(std::shared_ptr<Browser> browser, std::shared_ptr<CompletionQueue> queue,
                   std::string target, std::string session)
    : browser_(std::move(browser)),
      queue_(std::move(queue)),
      target_(std::move(target)),
      session_(std::move(session)),
      channel_(std::make_shared<PageChannel>(browser_->Client(), session_, queue_->ForOtherThreads())) {
  browser_->Client().AddSession(session_, channel_);
}

PageLink::~PageLink() {
  browser_->Client().RemoveSession(session_);
  browser_->Client().Tell("", "Target.closeTarget", {{"targetId", target_}});
}

void PageLink::Tell(const char* method, Json parameters) const {
  browser_->Client().Tell(session_, method, std::move(parameters));
}

void PageLink::Call(const char* method, Json parameters, DevToolsClient::Reply reply) const {
  browser_->Client().Call(session_, method, std::move(parameters), queue_->ForOtherThreads(),
                          std::move(reply));
}

}  // namespace qv::devhost
