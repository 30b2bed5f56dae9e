#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "webview2/chromium/devtools_client.h"

namespace qv::devhost {

/// One running browser, shared by everything that has the same options. It ends with its last owner; its
/// profile stays for the next one of this process. Any thread may use it, but it must not be let go on its
/// own receiving thread. The library stays in memory once there has been one: answers may still be on their
/// way when the host lets go of it.
class Browser {
 public:
  /// Receives S_OK, or why the browser did not start.
  using Ready = std::function<void(HRESULT)>;

  /// The live browser for these options, or one that starts now.
  [[nodiscard]] static std::shared_ptr<Browser> ForOptions(const BrowserOptions& options);
  /// Crashes every browser that runs. False when there is none.
  [[nodiscard]] static bool CrashAll();

  explicit Browser(const BrowserOptions& options);
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;
  ~Browser();

  /// Calls `ready` through the queue, once the browser runs or cannot start.
  void WhenReady(const CompletionQueue::Entrance& queue, Ready ready);
  [[nodiscard]] bool IsRunning() const;
  /// Only after `WhenReady` has brought S_OK.
  [[nodiscard]] DevToolsClient& Client() const { return *client_; }

 private:
  enum class Phase { kStarting, kRunning, kGone };

  void Run();
  [[nodiscard]] HRESULT Start();
  [[nodiscard]] HRESULT AwaitAddress(DevToolsAddress& address) const;
  void Enter(Phase phase, HRESULT result);

  std::shared_ptr<BrowserKeeper> keeper_;
  std::atomic<bool> stopping_{false};
  /// The keeper's number of this browser, 0 before it is ordered.
  std::atomic<unsigned> number_{0};
  mutable std::mutex mutex_;
  Phase phase_ = Phase::kStarting;
  /// What `WhenReady` answers once the start is over.
  HRESULT result_ = E_PENDING;
  std::vector<std::pair<CompletionQueue::Entrance, Ready>> waiting_;
  std::unique_ptr<DevToolsClient> client_;
  /// Last: it uses everything above and ends before that.
  std::thread thread_;
};

}  // namespace qv::devhost
