#include "webview2/chromium/navigation_tracker.h"

#include <map>
#include <utility>

#include "foundation/text.h"
#include "webview2/chromium/net_error.h"

namespace qv::devhost {
namespace {

constexpr int kFirstHttpError = 400;

std::string Text(const Json& object, const char* member) {
  const auto found = object.find(member);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

}  // namespace

void NavigationTracker::Ordered(std::uint64_t navigation) {
  current_ = Navigation{navigation};
  ordered_.push_back(navigation);
}

void NavigationTracker::Answered(std::uint64_t navigation, bool failed, const Json& answer) {
  // One that could not even begin.
  std::erase(ordered_, navigation);
  if (current_.navigation != navigation) return;
  const std::string error = Text(answer, "errorText");
  // No loader: the address differs in its fragment only, and the same document stays.
  if (failed || (error.empty() && !answer.contains("loaderId"))) {
    current_.failed = failed;
    return End();
  }
  if (!error.empty()) Fail(error);
}

void NavigationTracker::Forget() {
  current_ = {};
  ordered_.clear();
}

void NavigationTracker::OnEvent(const std::string& method, const Json& parameters) {
  using Handler = void (NavigationTracker::*)(const Json&);
  static const std::map<std::string, Handler> kHandlers = {
      {"Page.frameStartedNavigating", &NavigationTracker::OnStarted},
      {"Network.responseReceived", &NavigationTracker::OnResponse},
      {"Network.loadingFailed", &NavigationTracker::OnLoadingFailed},
      {"Page.frameNavigated", &NavigationTracker::OnFrameNavigated},
      {"Page.navigatedWithinDocument", &NavigationTracker::OnWithinDocument},
      {"Page.lifecycleEvent", &NavigationTracker::OnLifecycle},
  };
  const auto handler = kHandlers.find(method);
  if (handler != kHandlers.end()) (this->*handler->second)(parameters);
}

void NavigationTracker::OnStarted(const Json& parameters) {
  if (Text(parameters, "frameId") != mainFrame_) return;
  const std::string loader = Text(parameters, "loaderId");
  if (!ordered_.empty()) {
    if (ordered_.front() == current_.navigation) current_.loader = loader;
    ordered_.pop_front();
    return;
  }
  const std::string type = Text(parameters, "navigationType");
  if (type == "sameDocument" || type == "historySameDocument") return;
  const auto navigation = report_.PageNavigates(FromUtf8(Text(parameters, "url")));
  if (navigation == 0) return report_.StopLoading();
  current_ = Navigation{navigation, loader};
}

void NavigationTracker::OnResponse(const Json& parameters) {
  if (Text(parameters, "type") != "Document" || !IsCurrent(parameters, "loaderId")) return;
  if (Text(parameters, "requestId") != current_.loader) return;
  current_.failed = parameters["response"].value("status", 0) >= kFirstHttpError;
}

void NavigationTracker::OnLoadingFailed(const Json& parameters) {
  if (IsCurrent(parameters, "requestId") && !current_.committed) Fail(Text(parameters, "errorText"));
}

void NavigationTracker::OnFrameNavigated(const Json& parameters) {
  const Json& frame = parameters["frame"];
  if (Text(frame, "id") != mainFrame_) return;
  if (IsCurrent(frame, "loaderId")) current_.committed = true;
  // An error page stands at the address that could not be loaded.
  const std::string unreachable = Text(frame, "unreachableUrl");
  report_.DocumentChanged(
      FromUtf8(unreachable.empty() ? Text(frame, "url") + Text(frame, "urlFragment") : unreachable));
}

void NavigationTracker::OnWithinDocument(const Json& parameters) {
  if (Text(parameters, "frameId") == mainFrame_) report_.DocumentChanged(FromUtf8(Text(parameters, "url")));
}

void NavigationTracker::OnLifecycle(const Json& parameters) {
  if (Text(parameters, "name") == "load" && IsCurrent(parameters, "loaderId")) End();
}

bool NavigationTracker::IsCurrent(const Json& parameters, const char* loaderMember) const {
  return current_.navigation != 0 && !current_.loader.empty() &&
         Text(parameters, loaderMember) == current_.loader;
}

void NavigationTracker::Fail(const std::string& netError) {
  current_.failed = true;
  current_.status = StatusOfNetError(netError);
  // Nothing more comes of it; after every other failure the browser loads a page that tells of it.
  if (current_.status == COREWEBVIEW2_WEB_ERROR_STATUS_OPERATION_CANCELED) End();
}

void NavigationTracker::End() {
  const Navigation ended = std::exchange(current_, {});
  report_.NavigationEnded(ended.navigation, !ended.failed, ended.status);
}

}  // namespace qv::devhost
