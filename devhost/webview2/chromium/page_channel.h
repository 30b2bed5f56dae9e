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
  /// A new picture of the page waits to be taken; `number` is what the browser wants acknowledged.
  virtual void OnFrame(int number) = 0;
  virtual void OnBrowserLost() = 0;

 protected:
  ~PageReceiver() = default;
};

/// The way of one page's events from the receiving thread to the page's own. Pictures are decoded on the
/// former, and what nobody here reads goes no further.
class PageChannel final : public SessionSink, public std::enable_shared_from_this<PageChannel> {
 public:
  explicit PageChannel(CompletionQueue::Entrance queue) : queue_(std::move(queue)) {}

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

  CompletionQueue::Entrance queue_;
  std::mutex mutex_;
  FramePicture frame_;
  // On the page's thread only.
  std::weak_ptr<PageReceiver> receiver_;
  bool lost_ = false;
};

}  // namespace qv::devhost
