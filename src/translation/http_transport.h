#pragma once

#include <string>
#include <string_view>

#include "foundation/service_endpoint.h"
#include "translation/run_flags.h"
#include "translation/translate_request.h"

namespace qv {

/// What a worker needs to speak to the service in the user's name; copied before it starts.
struct ServiceAccess {
  ServiceEndpoint endpoint;
  /// Bearer token; empty sends none.
  std::wstring token;
  /// JSON object.
  std::wstring clientContext;
};

/// Posts a JSON body to a path of the service. Worker thread.
[[nodiscard]] ServiceAnswer PostTranslateHttp(const ServiceAccess& access, std::wstring_view path,
                                              std::wstring_view body);

/// Sends batches straight to the service. Waits while the run is paused; a cancelled run sends nothing more.
class HttpTransport final : public Transport {
 public:
  /// `flags` outlives the transport.
  HttpTransport(ServiceAccess access, const RunFlags& flags) : access_(std::move(access)), flags_(flags) {}

  [[nodiscard]] TranslateResult Send(const TranslateRequest& request) override;

 private:
  ServiceAccess access_;
  const RunFlags& flags_;
};

}  // namespace qv
