#pragma once

#include <string>

#include "foundation/https_client.h"
#include "foundation/service_endpoint.h"
#include "services/listener_request.h"
#include "services/listener_responder.h"
#include "services/upstream_exchange.h"

namespace qv {

/// The client's request as the service gets it: its body byte for byte, and the user's token in place of the
/// key. Says in the log what is forwarded, and whither.
[[nodiscard]] HttpRequest MakeForwardRequest(const ListenerRequest& request, const std::wstring& accessToken,
                                             const ServiceEndpoint& upstream);

/// Hands the service's answer on: as a stream, piece by piece, when it is one, else at a stroke. A failure
/// before the answer's end, or at any time of one that is no stream, is a "502 Bad Gateway". On the
/// listener's worker, until the answer's end, the client's leave or a calling off.
void RelayAnswer(UpstreamExchange& exchange, ListenerResponder& responder);

}  // namespace qv
