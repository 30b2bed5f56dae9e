#include "engines/common/member_fault_json.h"

#include <cstdint>
#include <stdexcept>
#include <utility>

namespace qv::devhost {
namespace {

using nlohmann::json;

HRESULT CodeOf(const json& code) {
  const auto number =
      code.is_string() ? std::stoll(code.get<std::string>(), nullptr, 0) : code.get<long long>();
  return static_cast<HRESULT>(static_cast<std::uint32_t>(number));
}

unsigned OnOf(const json& on) {
  return FaultWord<unsigned>({{"any", kOnAnyCall},
                              {"get", kOnGet},
                              {"put", kOnPut},
                              {"method", kOnMethod},
                              {"names", kOnNameLookup}},
                             on, "on");
}

/// The codes of the spreadsheet itself arrive as exceptions, all others as plain results.
bool IsHostCode(HRESULT code) {
  return (static_cast<std::uint32_t>(code) >> 16) == 0x800A;
}

}  // namespace

void ThrowBadFault(const std::string& what) {
  throw std::runtime_error("fault: " + what);
}

long TimesFromJson(const json& times) {
  if (times.is_boolean()) return times.get<bool>() ? kAlways : 0;
  if (times.is_string()) return FaultWord<long>({{"always", kAlways}}, times, "times");
  return times.get<long>();
}

MemberFault FailureFromJson(const json& fault) {
  MemberFault failure;
  failure.member = fault.at("fail").get<std::string>();
  if (fault.contains("code")) {
    const HRESULT code = CodeOf(fault.at("code"));
    const std::map<std::string, bool> forms = {{"exception", true}, {"result", false}};
    const bool exception = fault.contains("as") ? FaultWord(forms, fault.at("as"), "as") : IsHostCode(code);
    failure.error = exception ? HostError{DISP_E_EXCEPTION, code} : HostError{code, 0};
  }
  if (fault.contains("times")) failure.times = TimesFromJson(fault.at("times"));
  if (fault.contains("on")) failure.on = OnOf(fault.at("on"));
  failure.after = fault.value("after", 0L);
  return failure;
}

MemberFault BusyFromJson(const json& fault) {
  constexpr HRESULT kRejected = RPC_E_CALL_REJECTED;
  constexpr HRESULT kRetryLater = static_cast<HRESULT>(0x8001010A);
  const std::map<std::string, std::pair<HostError, unsigned>> ways = {
      {"exception", {{DISP_E_EXCEPTION, kHostBusy}, kOnAnyCall}},
      {"rejected", {{kRejected, 0}, kOnNameLookup}},
      {"retry", {{kRetryLater, 0}, kOnAnyCall}},
  };
  MemberFault busy;
  busy.member = fault.value("member", std::string("*"));
  busy.times = TimesFromJson(fault.at("busy"));
  const auto& [error, on] = FaultWord(ways, fault.value("way", json("exception")), "way");
  busy.error = error;
  busy.on = on;
  return busy;
}

MemberFault DelayFromJson(const json& fault) {
  MemberFault delay;
  delay.slowMs = fault.at("slow").get<unsigned>();
  delay.member = fault.value("member", std::string("*"));
  if (fault.contains("times")) delay.times = TimesFromJson(fault.at("times"));
  return delay;
}

bool IsDetailOfFault(const std::string& member) {
  return member == "code" || member == "as" || member == "times" || member == "on" || member == "after" ||
         member == "way" || member == "member";
}

}  // namespace qv::devhost
