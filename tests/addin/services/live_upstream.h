#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/service_endpoint.h"

namespace qv {

/// A service on 127.0.0.1 that the test plays itself, a connection at a time: what it says, and when. Waits
/// ten seconds at most for anything.
class LiveUpstream {
 public:
  LiveUpstream();
  LiveUpstream(const LiveUpstream&) = delete;
  LiveUpstream& operator=(const LiveUpstream&) = delete;
  ~LiveUpstream();

  [[nodiscard]] ServiceEndpoint Endpoint() const { return {L"127.0.0.1", port_, false}; }

  /// Waits for the next connection and its request, head and body; empty when none comes.
  [[nodiscard]] std::string TakeRequest();
  /// False once the client is gone.
  bool Say(std::string_view bytes);
  /// The answer's end.
  void End();
  /// Ends the connection the hard way, as a crash would.
  void Cut();
  /// Whether the client's side of the connection has ended, within the ten seconds.
  [[nodiscard]] bool HasBeenLeft();

 private:
  // Filled while the next member is made, so it stands ahead of it.
  std::uint16_t port_ = 0;
  std::uintptr_t listener_;
  std::uintptr_t connection_;
};

}  // namespace qv
