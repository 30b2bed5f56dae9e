#pragma once

#include <memory>
#include <string>

#include "webview2/chromium/browser.h"
#include "webview2/chromium/page_channel.h"

namespace qv::devhost {

/// One page in a browser; closed with its last owner. Use it on the page's own thread.
class PageLink {
 public:
  PageLink(std::shared_ptr<Browser> browser, std::shared_ptr<CompletionQueue> queue, std::string target,
           std::string session);
  PageLink(const PageLink&) = delete;
  PageLink& operator=(const PageLink&) = delete;
  ~PageLink();

  /// Sends a command to the page; without an answer, or with one that comes later.
  void Tell(const char* method, Json parameters = nullptr) const;
  void Call(const char* method, Json parameters, DevToolsClient::Reply reply) const;

  [[nodiscard]] PageChannel& Channel() const { return *channel_; }
  /// The browser's name of the page, which is also that of its main frame.
  [[nodiscard]] const std::string& Target() const { return target_; }
  [[nodiscard]] const std::shared_ptr<CompletionQueue>& Queue() const { return queue_; }

 private:
  std::shared_ptr<Browser> browser_;
  std::shared_ptr<CompletionQueue> queue_;
  std::string target_;
  std::string session_;
  std::shared_ptr<PageChannel> channel_;
};

}  // namespace qv::devhost
