#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>

#include "panel/webview2_interfaces.h"
#include "webview2/chromium/devtools_json.h"

namespace qv::devhost {

/// What the tracker finds out. Every member may lead to the end of the tracker itself, so each is called
/// last.
class NavigationReport {
 public:
  /// The page navigates by itself. The number of the navigation, or 0 when it is refused.
  [[nodiscard]] virtual std::uint64_t PageNavigates(const std::wstring& uri) = 0;
  virtual void StopLoading() = 0;
  virtual void DocumentChanged(const std::wstring& uri) = 0;
  virtual void NavigationEnded(std::uint64_t navigation, bool success,
                               COREWEBVIEW2_WEB_ERROR_STATUS status) = 0;

 protected:
  ~NavigationReport() = default;
};

/// Makes navigations with a beginning and one end out of what the browser says about the main frame. A
/// document load is known by its loader id from its first event to its last.
class NavigationTracker {
 public:
  NavigationTracker(NavigationReport& report, std::string mainFrame)
      : report_(report), mainFrame_(std::move(mainFrame)) {}

  /// The web view is about to send its own navigation.
  void Ordered(std::uint64_t navigation);
  /// The browser's answer to it.
  void Answered(std::uint64_t navigation, bool failed, const Json& answer);

  /// One event of the page; those that say nothing about navigations are ignored. The tracker may be gone
  /// afterwards.
  void OnEvent(const std::string& method, const Json& parameters);
  /// The page's process has ended: whatever was under way is.
  void Forget();

  /// Whether a document is on its way and the present one about to go.
  [[nodiscard]] bool IsLeaving() const { return current_.navigation != 0 && !current_.committed; }

 private:
  struct Navigation {
    std::uint64_t navigation = 0;
    /// Empty until the browser has begun.
    std::string loader{};
    bool committed = false;
    bool failed = false;
    COREWEBVIEW2_WEB_ERROR_STATUS status = COREWEBVIEW2_WEB_ERROR_STATUS_UNKNOWN;
  };

  void OnStarted(const Json& parameters);
  void OnResponse(const Json& parameters);
  void OnLoadingFailed(const Json& parameters);
  void OnFrameNavigated(const Json& parameters);
  void OnWithinDocument(const Json& parameters);
  void OnLifecycle(const Json& parameters);
  [[nodiscard]] bool IsCurrent(const Json& parameters, const char* loaderMember) const;
  void Fail(const std::string& netError);
  void End();

  NavigationReport& report_;
  std::string mainFrame_;
  Navigation current_;
  /// What the web view has sent and the browser not yet begun, superseded ones among them.
  std::deque<std::uint64_t> ordered_;
};

}  // namespace qv::devhost
