#include "services/mcp_server.h"

#include <utility>

namespace qv {
namespace {

constexpr ListenerStatus kOk{200, "OK"};

/// The server of this process that took the port last. UI thread.
McpServer* g_latest = nullptr;

ListenerService Describe(McpDispatch dispatch, std::function<void()> wakeWaiters,
                         std::function<void()> beforeYield, std::uint16_t port) {
  ListenerService service;
  service.port = port;
  service.userAgent = L"QuorvantisExcelMcp/1.0";
  service.workerJoinsCom = true;
  service.wakeWaiters = std::move(wakeWaiters);
  service.beforeYield = std::move(beforeYield);
  service.handle = [dispatch = std::move(dispatch)](const ListenerRequest& request,
                                                    ListenerResponder& responder) {
    if (responder.AnswerYield(request, kOk)) return;
    responder.Send(kOk, HandleMcpRequest(request, dispatch));
  };
  return service;
}

}  // namespace

McpServer::McpServer(McpDispatch dispatch, std::function<void()> wakeWaiters, std::uint16_t port)
    : listener_(Describe(
          std::move(dispatch), std::move(wakeWaiters), [this] { StopOtherPanes(); }, port)) {}

McpServer::~McpServer() {
  if (g_latest == this) g_latest = nullptr;
}

bool McpServer::Start() {
  const bool started = listener_.Start();
  if (started) g_latest = this;
  return started;
}

void McpServer::StopOtherPanes() {
  // Another pane's worker may wait for this thread with a tool call. It would not hear a request to yield
  // while this thread waits for the answer.
  if (g_latest != nullptr && g_latest != this) g_latest->Stop();
}

}  // namespace qv
