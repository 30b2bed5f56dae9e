#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "webview2/chromium/devtools_client.h"
#include "webview2/chromium/frame_picture.h"

namespace qv::devhost {

/// Takes what a page reports, on the page's own thread.
class PageReceiver {
 public:
  virtual void OnPageEvent(const std::string& method, const Json& parameters) = 0;
  /// A picture that differs from the one before waits to be taken.
  virtual void OnFrame() = 0;
  virtual void OnBrowserLost() = 0;

 protected:
  ~PageReceiver() = default;
};

/// The way of one page's events from the receiving thread to the page's own. What nobody here reads goes no
/// further. Pictures are decoded and acknowledged on the former, however busy the latter is: the browser
/// drops pictures while it waits, the last one among them.
class PageChannel final : public SessionSink, public std::enable_shared_from_this<PageChannel> {
 public:
  /// The client must live as long as it may call this.
  PageChannel(DevToolsClient& client, std::string session, CompletionQueue::Entrance queue)
      : client_(client), session_(std::move(session)), queue_(std::move(queue)) {}

  /// On the page's thread. Events that came before are lost, but not the loss of the browser.
  void Attach(std::weak_ptr<PageReceiver> receiver);
  /// The newest picture, once.
  [[nodiscard]] FramePicture TakeFrame();

  void OnEvent(const std::string& method, Json& parameters) override;
  void OnLost() override;

 private:
  template <typename Action>
  void PostToReceiver(Action action);
  void OnFrame(const Json& parameters);

  DevToolsClient& client_;
  std::string session_;
  CompletionQueue::Entrance queue_;
  /// The picture before, as it came; on the receiving thread only.
  std::string lastFrame_;
  std::mutex mutex_;
  FramePicture frame_;
  // On the page's thread only.
  std::weak_ptr<PageReceiver> receiver_;
  bool lost_ = false;
};

}  // namespace qv::devhost
