#pragma once

#include <cstdint>
#include <functional>

#include "services/loopback_listener.h"
#include "services/mcp_json_rpc.h"
#include "services/mcp_port.h"
#include "services/newest_in_process.h"

namespace qv {

/// The tool server of one pane: coding agents on this machine call the workbook's tools through it. The
/// newest starter of all panes and processes has the port; the others' servers stop. It stops when it goes.
/// Host UI thread.
class McpServer {
 public:
  /// `dispatch` is called on the server's worker and may wait for the UI thread; `wakeWaiters` ends such a
  /// wait. `port` is another one only in tests.
  McpServer(McpDispatch dispatch, std::function<void()> wakeWaiters, std::uint16_t port = kMcpPort);
  McpServer(const McpServer&) = delete;
  McpServer& operator=(const McpServer&) = delete;

  /// True when the server listens, also when it did before. Takes up to half a minute when the port's owner
  /// answers and does not let go.
  [[nodiscard]] bool Start();
  void Stop() { listener_.Stop(); }
  [[nodiscard]] bool IsRunning() const { return listener_.IsRunning(); }

 private:
  NewestInProcess<McpServer> newest_;
  LoopbackListener listener_;
};

}  // namespace qv
