#pragma once

#include <nlohmann/json.hpp>

#include "foundation/service_endpoint.h"

namespace qv {

/// The local service that the test wrapper has started, with its fault endpoints.
class ServiceControl {
 public:
  /// Address from the environment variable QV_TEST_SERVICE; throws when it is missing.
  ServiceControl();

  [[nodiscard]] const ServiceEndpoint& Endpoint() const { return endpoint_; }

  /// Forgets faults and recorded requests.
  void Reset();
  /// Adds one fault; see the service's own description.
  void Fault(const nlohmann::json& fault);
  /// Bodies of the translation requests since the last reset.
  [[nodiscard]] std::vector<nlohmann::json> TranslateBodies();

 private:
  std::string Call(const wchar_t* verb, const wchar_t* path, const std::string& body);

  ServiceEndpoint endpoint_;
};

}  // namespace qv
