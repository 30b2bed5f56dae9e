#include "service_control.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "foundation/https_client.h"
#include "foundation/text.h"

namespace qv {

ServiceControl::ServiceControl() {
  const char* address = std::getenv("QV_TEST_SERVICE");
  const std::string text = address != nullptr ? address : "";
  const std::string prefix = "http://127.0.0.1:";
  if (!text.starts_with(prefix)) throw std::runtime_error("QV_TEST_SERVICE does not name the local service");
  endpoint_ = {L"127.0.0.1", static_cast<std::uint16_t>(std::stoi(text.substr(prefix.size()))), false};
}

void ServiceControl::Reset() {
  Call(L"DELETE", L"/control/faults", "");
  Call(L"DELETE", L"/control/requests", "");
}

void ServiceControl::Fault(const nlohmann::json& fault) {
  Call(L"POST", L"/control/faults", nlohmann::json{{"queue", {fault}}}.dump());
}

std::vector<nlohmann::json> ServiceControl::TranslateBodies() {
  std::vector<nlohmann::json> bodies;
  for (const nlohmann::json& entry : nlohmann::json::parse(Call(L"GET", L"/control/requests", ""))) {
    const nlohmann::json& body = entry.at("body");
    bodies.push_back(body.is_string() ? nlohmann::json::parse(body.get<std::string>()) : body);
  }
  return bodies;
}

std::string ServiceControl::Call(const wchar_t* verb, const wchar_t* path, const std::string& body) {
  HttpRequest request;
  request.endpoint = endpoint_;
  request.verb = verb;
  request.path = path;
  request.body = body;
  if (!body.empty()) request.headers = L"Content-Type: application/json\r\n";
  const HttpResponse response = SendHttp(request);
  if (!response.ok || response.status >= 300) {
    throw std::runtime_error("service control failed: " + std::to_string(response.status) + " " +
                             response.body);
  }
  return response.body;
}

}  // namespace qv
