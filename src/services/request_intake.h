#pragma once

#include <vector>

#include "services/http_queue.h"
#include "services/listener_request.h"

namespace qv {

/// Receives requests of a queue one at a time. Used by one thread.
class RequestIntake {
 public:
  explicit RequestIntake(const HttpQueue& queue);

  /// Waits for a request's head. False when none can be received any more, which a head beyond 64 KiB means
  /// too.
  [[nodiscard]] bool Receive(ListenerRequest& request);

  /// Adds what the client still sends of the body, of any size, when the method has one. A client that fails
  /// meanwhile leaves what came.
  void ReadBody(ListenerRequest& request);

 private:
  const HttpQueue& queue_;
  /// Words, so that HTTP_REQUEST is aligned.
  std::vector<std::uint64_t> head_;
  std::vector<char> piece_;
};

}  // namespace qv
