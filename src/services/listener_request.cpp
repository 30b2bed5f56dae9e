#include "services/listener_request.h"

#include <algorithm>

namespace qv {
namespace {

constexpr std::string_view kYieldHeader = "x-quorvantis-yield";

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string ListenerMethod(ListenerVerb verb, std::string_view raw) {
  switch (verb) {
    case ListenerVerb::Post:
      return "POST";
    case ListenerVerb::Get:
      return "GET";
    case ListenerVerb::Options:
      return "OPTIONS";
    case ListenerVerb::Unknown:
      return raw.empty() ? "OTHER" : std::string(raw);
    case ListenerVerb::Other:
      break;
  }
  return "OTHER";
}

bool ReadsBody(std::string_view method) {
  return method == "POST" || method == "PUT" || method == "PATCH";
}

bool IsYieldHeader(std::string_view name, std::string_view value) {
  return std::equal(name.begin(), name.end(), kYieldHeader.begin(), kYieldHeader.end(),
                    [](char a, char b) { return Lower(a) == b; }) &&
         value.starts_with('1');
}

YieldDecision DecideYield(const ListenerRequest& request) {
  if (request.method == "OPTIONS") return YieldDecision::NotAYield;
  if (request.path != "/yield" && request.path != "/yield/") return YieldDecision::NotAYield;
  return request.yield ? YieldDecision::Granted : YieldDecision::Refused;
}

}  // namespace qv
