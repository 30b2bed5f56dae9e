#include "engines/memory/fault_json.h"

#include <map>
#include <stdexcept>
#include <string>
#include <utility>

namespace qv::devhost::memory {
namespace {

using nlohmann::json;
using Steps = std::vector<std::function<void(Host&)>>;

[[noreturn]] void Bad(const std::string& what) {
  throw std::runtime_error("fault: " + what);
}

template <typename Value>
Value Word(const std::map<std::string, Value>& words, const json& word, const std::string& member) {
  const auto found = words.find(word.get<std::string>());
  if (found == words.end()) Bad("unknown word for " + member + ": " + word.get<std::string>());
  return found->second;
}

long TimesOf(const json& times) {
  if (times.is_boolean()) return times.get<bool>() ? kAlways : 0;
  if (times.is_string()) return Word<long>({{"always", kAlways}}, times, "times");
  return times.get<long>();
}

HRESULT CodeOf(const json& code) {
  const auto number =
      code.is_string() ? std::stoll(code.get<std::string>(), nullptr, 0) : code.get<long long>();
  return static_cast<HRESULT>(static_cast<std::uint32_t>(number));
}

unsigned OnOf(const json& on) {
  return Word<unsigned>({{"any", kOnAnyCall},
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

MemberFault FailureOf(const json& fault) {
  MemberFault failure;
  failure.member = fault.at("fail").get<std::string>();
  if (fault.contains("code")) {
    const HRESULT code = CodeOf(fault.at("code"));
    const std::map<std::string, bool> forms = {{"exception", true}, {"result", false}};
    const bool exception = fault.contains("as") ? Word(forms, fault.at("as"), "as") : IsHostCode(code);
    failure.error = exception ? HostError{DISP_E_EXCEPTION, code} : HostError{code, 0};
  }
  if (fault.contains("times")) failure.times = TimesOf(fault.at("times"));
  if (fault.contains("on")) failure.on = OnOf(fault.at("on"));
  failure.after = fault.value("after", 0L);
  return failure;
}

MemberFault BusyOf(const json& fault) {
  constexpr HRESULT kRejected = RPC_E_CALL_REJECTED;
  constexpr HRESULT kRetryLater = static_cast<HRESULT>(0x8001010A);
  const std::map<std::string, std::pair<HostError, unsigned>> ways = {
      {"exception", {{DISP_E_EXCEPTION, kHostBusy}, kOnAnyCall}},
      {"rejected", {{kRejected, 0}, kOnNameLookup}},
      {"retry", {{kRetryLater, 0}, kOnAnyCall}},
  };
  MemberFault busy;
  busy.member = fault.value("member", std::string("*"));
  busy.times = TimesOf(fault.at("busy"));
  const auto& [error, on] = Word(ways, fault.value("way", json("exception")), "way");
  busy.error = error;
  busy.on = on;
  return busy;
}

void AddMissing(const json& missing, Steps& steps) {
  for (const json& member : missing.is_array() ? missing : json::array({missing})) {
    steps.push_back([name = member.get<std::string>()](Host& host) { host.faults.Hide(name); });
  }
}

void AddItemForm(const json& fault, Steps& steps) {
  const std::map<std::string, ItemForm> forms = {{"every", ItemForm::kEvery},
                                                 {"property", ItemForm::kPropertyOnly},
                                                 {"method", ItemForm::kMethodOnly},
                                                 {"default", ItemForm::kDefaultOnly}};
  const ItemForm form = Word(forms, fault.at("item"), "item");
  steps.push_back([form, name = fault.value("class", std::string("*"))](Host& host) {
    host.faults.SetItemForm(name, form);
  });
}

void AddEvents(const json& word, Steps& steps) {
  const std::map<std::string, EventStyle> styles = {{"named", EventStyle::kNamed},
                                                    {"positional", EventStyle::kPositional},
                                                    {"refused", EventStyle::kRefuseFind},
                                                    {"refuseAdvise", EventStyle::kRefuseAdvise}};
  const EventStyle style = Word(styles, word, "events");
  steps.push_back([style](Host& host) {
    if (host.events != nullptr) host.events->SetStyle(style);
  });
}

/// Members that only go with another one.
bool IsDetail(const std::string& member) {
  return member == "code" || member == "as" || member == "times" || member == "on" || member == "after" ||
         member == "way" || member == "member" || member == "class";
}

void AddStep(const std::string& member, const json& value, const json& fault, Steps& steps) {
  if (member == "clear") {
    steps.insert(steps.begin(), [](Host& host) { host.faults.Clear(); });
  } else if (member == "fail") {
    steps.push_back([failure = FailureOf(fault)](Host& host) { host.faults.Fail(failure); });
  } else if (member == "busy") {
    steps.push_back([busy = BusyOf(fault)](Host& host) { host.faults.Fail(busy); });
  } else if (member == "missing") {
    AddMissing(value, steps);
  } else if (member == "item") {
    AddItemForm(fault, steps);
  } else if (member == "events") {
    AddEvents(value, steps);
  } else if (member == "bulkValue2") {
    steps.push_back([times = TimesOf(value)](Host& host) { host.faults.failBulkGets = times; });
  } else if (member == "bulkPut") {
    steps.push_back([times = TimesOf(value)](Host& host) { host.faults.failBulkPuts = times; });
  } else if (member == "arrayAnswers") {
    steps.push_back([on = value.get<bool>()](Host& host) { host.faults.arrayAnswers = on; });
  } else if (member == "typedRange") {
    steps.push_back([on = value.get<bool>()](Host& host) { host.typedRange = on; });
  } else if (member == "windowWorkbook") {
    steps.push_back([on = value.get<bool>()](Host& host) { host.windowHasWorkbook = on; });
  } else if (!IsDetail(member)) {
    Bad("unknown member " + member);
  }
}

}  // namespace

Steps FaultStepsFromJson(const json& fault) {
  try {
    if (!fault.is_object() || fault.empty()) Bad("an object with at least one member is wanted");
    Steps steps;
    for (const auto& [member, value] : fault.items())
      AddStep(member, value, fault, steps);
    if (steps.empty()) Bad("nothing to do");
    return steps;
  } catch (const json::exception& error) {
    Bad(error.what());
  } catch (const std::logic_error&) {
    // A code that is no number.
    Bad("bad code");
  }
}

}  // namespace qv::devhost::memory
