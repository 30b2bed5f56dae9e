#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "../foundation/loopback_server.h"

namespace qv {

/// A service on this machine that takes the add-in's analytics events; connections made from now on use it.
class AnalyticsService {
 public:
  /// It takes that many.
  explicit AnalyticsService(std::size_t events);

  /// What was sent so far, once there are `count` events or after ten seconds: each the request and its body.
  [[nodiscard]] std::vector<std::string> Events(std::size_t count) { return server_.WaitForRequests(count); }
  /// The request with an event of this name; empty when it does not come in time. The first connection of a
  /// process sends one of its own ahead of it.
  [[nodiscard]] std::string Find(const std::string& event);

 private:
  LoopbackServer server_;
  std::size_t events_;
};

}  // namespace qv
