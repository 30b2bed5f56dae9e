#include "webview2/chromium/page_channel.h"

#include <set>

namespace qv::devhost {
namespace {

const std::set<std::string>& WantedEvents() {
  static const std::set<std::string> kEvents = {
      "Inspector.targetCrashed", "Network.loadingFailed",        "Network.responseReceived",
      "Page.frameNavigated",     "Page.frameStartedNavigating",  "Page.javascriptDialogOpening",
      "Page.lifecycleEvent",     "Page.navigatedWithinDocument", "Runtime.bindingCalled",
  };
  return kEvents;
}

}  // namespace

template <typename Action>
void PageChannel::PostToReceiver(Action action) {
  queue_.Post([weak = weak_from_this(), action = std::move(action)] {
    const auto self = weak.lock();
    const auto receiver = self ? self->receiver_.lock() : nullptr;
    if (receiver) action(*receiver);
  });
}

void PageChannel::Attach(std::weak_ptr<PageReceiver> receiver) {
  receiver_ = std::move(receiver);
  if (lost_) PostToReceiver([](PageReceiver& target) { target.OnBrowserLost(); });
}

FramePicture PageChannel::TakeFrame() {
  const std::scoped_lock lock(mutex_);
  return std::move(frame_);
}

void PageChannel::OnEvent(const std::string& method, Json& parameters) {
  if (method == "Page.screencastFrame") return OnFrame(parameters);
  if (!WantedEvents().contains(method)) return;
  PostToReceiver([method, parameters = std::move(parameters)](PageReceiver& receiver) {
    receiver.OnPageEvent(method, parameters);
  });
}

void PageChannel::OnFrame(const Json& parameters) {
  const auto& data = parameters.at("data").get_ref<const std::string&>();
  if (data != lastFrame_) {
    lastFrame_ = data;
    FramePicture picture = DecodeFrame(data);
    if (picture.bitmap) {
      const std::scoped_lock lock(mutex_);
      // One that nobody has taken yet is on its way to be announced.
      if (!frame_.bitmap) PostToReceiver([](PageReceiver& receiver) { receiver.OnFrame(); });
      frame_ = std::move(picture);
    }
  }
  client_.Tell(session_, "Page.screencastFrameAck", {{"sessionId", parameters.value("sessionId", 0)}});
}

void PageChannel::OnLost() {
  queue_.Post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->lost_ = true;
    if (const auto receiver = self->receiver_.lock()) receiver->OnBrowserLost();
  });
}

}  // namespace qv::devhost
