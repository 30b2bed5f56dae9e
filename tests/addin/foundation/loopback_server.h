#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "foundation/service_endpoint.h"

namespace qv {

/// A server on 127.0.0.1 that answers the n-th connection with the n-th reply, byte for byte, and closes it.
/// Stops by itself when it goes away; it waits for nothing longer than ten seconds.
class LoopbackServer {
 public:
  explicit LoopbackServer(std::vector<std::string> replies);
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;
  ~LoopbackServer();

  [[nodiscard]] ServiceEndpoint Endpoint() const { return {L"127.0.0.1", port_, false}; }

  /// The requests so far, head and body, once there are `count` or after ten seconds.
  [[nodiscard]] std::vector<std::string> WaitForRequests(std::size_t count);

 private:
  void Serve(const std::vector<std::string>& replies);
  [[nodiscard]] bool WaitForConnection() const;

  // Filled while the next member is made, so it stands ahead of it.
  std::uint16_t port_ = 0;
  std::uintptr_t listener_;
  std::atomic<bool> stopping_{false};
  std::mutex mutex_;
  std::condition_variable arrived_;
  std::vector<std::string> requests_;
  std::thread thread_;
};

/// A port of 127.0.0.1 that nothing listens on.
[[nodiscard]] std::uint16_t ClosedPort();

}  // namespace qv
