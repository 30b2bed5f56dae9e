#include "services/llm_proxy.h"

#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "services/llm_proxy_forward.h"
#include "services/proxy_log.h"
#include "services/proxy_token.h"

namespace qv {
namespace {

void Send(const ProxyAnswer& answer, ListenerResponder& responder) {
  responder.Send({answer.status, answer.reason}, answer.body);
}

void LogKey(std::wstring_view provided, std::wstring_view proxyToken) {
  ProxyLog(Concat(L"auth header len=", provided.size(), L" providedPrefix=",
                  provided.empty() ? L"(empty)" : LoggedPrefix(provided), L" expectedPrefix=",
                  LoggedPrefix(Concat(L"Bearer ", proxyToken))));
}

}  // namespace

/// While it lives, a stop can call the exchange off. However the relay ends, the exchange's own thread does
/// not wait for a reader that is gone.
class LlmProxy::Relaying {
 public:
  Relaying(LlmProxy& proxy, std::shared_ptr<UpstreamExchange> exchange) : proxy_(proxy) {
    proxy_.SetExchange(std::move(exchange));
  }
  Relaying(const Relaying&) = delete;
  Relaying& operator=(const Relaying&) = delete;
  ~Relaying() {
    proxy_.CallOffExchange();
    proxy_.SetExchange(nullptr);
  }

 private:
  LlmProxy& proxy_;
};

LlmProxy::LlmProxy(std::uint16_t port) : newest_(*this), listener_(DescribeService(port)) {}

ListenerService LlmProxy::DescribeService(std::uint16_t port) {
  ListenerService service;
  service.port = port;
  service.userAgent = kLlmProxyUserAgent;
  service.handle = [this](const ListenerRequest& request, ListenerResponder& responder) {
    HandleProxyRequest(request, responder);
  };
  service.log = ProxyLog;
  service.wakeWaiters = [this] { CallOffExchange(); };
  service.beforeYield = [this] { newest_.StopOther(); };
  return service;
}

std::wstring LlmProxy::EnsureProxyToken() {
  std::wstring proxyToken = GetProxyToken();
  if (proxyToken.empty()) {
    proxyToken = GenerateProxyToken();
    PaneLog(Concat(L"LLM Proxy token generated prefix=", LoggedPrefix(proxyToken)));
    const std::scoped_lock lock(mutex_);
    state_.proxyToken = proxyToken;
  }
  return proxyToken;
}

bool LlmProxy::PrepareLlmProxy(std::wstring_view accessToken, const ServiceEndpoint& upstream) {
  std::wstring proxyToken = EnsureProxyToken();
  {
    const std::scoped_lock lock(mutex_);
    state_ = {std::move(proxyToken), std::wstring(accessToken), upstream.host, upstream.port,
              upstream.secure};
  }
  const bool listens = listener_.Start();
  if (listens) newest_.Mark();
  return listens;
}

void LlmProxy::SetProxyAccessToken(std::wstring_view accessToken) {
  const std::scoped_lock lock(mutex_);
  if (!state_.proxyToken.empty()) state_.accessToken = accessToken;
}

std::wstring LlmProxy::GetProxyToken() const {
  const std::scoped_lock lock(mutex_);
  return state_.proxyToken;
}

LlmProxy::State LlmProxy::CopyState() const {
  const std::scoped_lock lock(mutex_);
  return state_;
}

void LlmProxy::HandleProxyRequest(const ListenerRequest& request, ListenerResponder& responder) {
  switch (RouteOf(request)) {
    case ProxyRoute::Preflight:
      return Send(kPreflightAnswer, responder);
    case ProxyRoute::Yield:
      static_cast<void>(responder.AnswerYield(request, {401, "Unauthorized"}));
      return;
    case ProxyRoute::ChatCompletions:
      return HandleChatCompletion(request, responder);
    case ProxyRoute::Unknown:
      return Send(kUnknownPathAnswer, responder);
  }
}

void LlmProxy::HandleChatCompletion(const ListenerRequest& request, ListenerResponder& responder) {
  const State state = CopyState();
  if (state.proxyToken.empty()) return Send(kNoTokenAnswer, responder);
  const std::wstring provided = FromUtf8(request.authorization);
  LogKey(provided, state.proxyToken);
  if (!CheckBearer(provided, state.proxyToken)) {
    ProxyLog(Concat(L"proxy token mismatch: providedLen=", provided.size(), L" expectedLen=",
                    state.proxyToken.size()));
    return Send(kWrongKeyAnswer, responder);
  }
  if (state.accessToken.empty()) return Send(kNotSignedInAnswer, responder);
  if (state.upstreamHost.empty()) return Send(kNoUpstreamAnswer, responder);
  ForwardChatCompletion(request, state, responder);
}

void LlmProxy::ForwardChatCompletion(const ListenerRequest& request, const State& state,
                                     ListenerResponder& responder) {
  const ServiceEndpoint upstream{state.upstreamHost, state.upstreamPort, state.upstreamSecure};
  const auto exchange = UpstreamExchange::Start(MakeForwardRequest(request, state.accessToken, upstream));
  const Relaying relaying(*this, exchange);
  RelayAnswer(*exchange, responder);
}

void LlmProxy::SetExchange(std::shared_ptr<UpstreamExchange> exchange) {
  const std::scoped_lock lock(mutex_);
  exchange_ = std::move(exchange);
}

void LlmProxy::CallOffExchange() {
  const std::scoped_lock lock(mutex_);
  if (exchange_) exchange_->CallOff();
}

}  // namespace qv
