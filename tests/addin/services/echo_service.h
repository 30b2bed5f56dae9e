#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "foundation/loopback_server.h"
#include "services/loopback_listener.h"

namespace qv {

/// A service on a free port that keeps its requests and answers each with its body, or with its path when it
/// has none.
struct EchoService {
  explicit EchoService(std::uint16_t port = ClosedPort()) {
    service.port = port;
    service.userAgent = L"QuorvantisTest/1.0";
    service.log = [this](std::wstring_view text) { log.emplace_back(text); };
    service.handle = [this](const ListenerRequest& request, ListenerResponder& responder) {
      {
        const std::scoped_lock lock(mutex);
        requests.push_back(request);
      }
      if (responder.AnswerYield(request, {401, "Unauthorized"})) return;
      responder.Send({200, "OK"}, request.body.empty() ? request.path : request.body);
    };
  }

  [[nodiscard]] std::vector<ListenerRequest> Requests() {
    const std::scoped_lock lock(mutex);
    return requests;
  }

  ListenerService service;
  std::vector<std::wstring> log;
  std::mutex mutex;
  std::vector<ListenerRequest> requests;
};

}  // namespace qv
