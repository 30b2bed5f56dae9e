#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "foundation/service_endpoint.h"
#include "services/llm_proxy_rules.h"
#include "services/loopback_listener.h"
#include "services/newest_in_process.h"
#include "services/upstream_exchange.h"

namespace qv {

/// Lets a coding agent use the service's language models with the signed-in user's account, without ever
/// seeing the user's token: the agent shows a key of the proxy's own, and the proxy puts the token in its
/// place. One belongs to each pane; the newest to be prepared has the port. Host UI thread, unless said
/// otherwise.
class LlmProxy {
 public:
  /// Costs nothing until it is prepared. Another port than the agents' is for tests.
  explicit LlmProxy(std::uint16_t port = kLlmProxyPort);
  LlmProxy(const LlmProxy&) = delete;
  LlmProxy& operator=(const LlmProxy&) = delete;

  /// Makes the key, the first time: what agents must present as their API key. Nothing listens yet.
  std::wstring EnsureProxyToken();

  /// Makes the key, the first time, takes the user's token and the service's address, and listens; true when
  /// it does. Waits for the port's former owner, for half a minute at most; one of this process is stopped,
  /// with the answer that it is at.
  [[nodiscard]] bool PrepareLlmProxy(std::wstring_view accessToken, const ServiceEndpoint& upstream);

  /// The token that requests are forwarded with from now on, empty while nobody is signed in. Ignored by a
  /// proxy that has no key yet.
  void SetProxyAccessToken(std::wstring_view accessToken);

  /// What agents must present as their API key; empty before it is made. Not for logs. Any thread.
  [[nodiscard]] std::wstring GetProxyToken() const;

  [[nodiscard]] bool IsRunning() const { return listener_.IsRunning(); }
  [[nodiscard]] std::uint16_t Port() const { return listener_.Port(); }

  /// Ends the service. An answer under way is cut off, however silent the service is.
  void Stop() { listener_.Stop(); }

 private:
  class Relaying;
  /// What the UI thread writes while the worker reads.
  struct State {
    std::wstring proxyToken;
    std::wstring accessToken;
    std::wstring upstreamHost;
    std::uint16_t upstreamPort = 443;
    bool upstreamSecure = true;
  };

  [[nodiscard]] ListenerService DescribeService(std::uint16_t port);
  [[nodiscard]] State CopyState() const;
  void HandleProxyRequest(const ListenerRequest& request, ListenerResponder& responder);
  void HandleChatCompletion(const ListenerRequest& request, ListenerResponder& responder);
  void ForwardChatCompletion(const ListenerRequest& request, const State& state,
                             ListenerResponder& responder);
  void SetExchange(std::shared_ptr<UpstreamExchange> exchange);
  void CallOffExchange();

  mutable std::mutex mutex_;
  State state_;
  /// The one that the worker relays, if any.
  std::shared_ptr<UpstreamExchange> exchange_;
  NewestInProcess<LlmProxy> newest_;
  /// Last, so that its worker has ended before the rest goes.
  LoopbackListener listener_;
};

}  // namespace qv
