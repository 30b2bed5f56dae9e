#include "services/mcp_server.h"

#include <utility>

namespace qv {
namespace {

constexpr ListenerStatus kOk{200, "OK"};

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
    : newest_(*this),
      listener_(Describe(
          std::move(dispatch), std::move(wakeWaiters), [this] { newest_.StopOther(); }, port)) {}

bool McpServer::Start() {
  const bool started = listener_.Start();
  if (started) newest_.Mark();
  return started;
}

}  // namespace qv
