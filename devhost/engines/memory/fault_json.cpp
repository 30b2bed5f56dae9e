#include "engines/memory/fault_json.h"

#include <map>
#include <stdexcept>
#include <string>
#include <utility>

#include "engines/common/member_fault_json.h"

namespace qv::devhost::memory {
namespace {

using nlohmann::json;
using Steps = std::vector<std::function<void(Host&)>>;

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
  const ItemForm form = FaultWord(forms, fault.at("item"), "item");
  steps.push_back([form, name = fault.value("class", std::string("*"))](Host& host) {
    host.faults.SetItemForm(name, form);
  });
}

void AddEvents(const json& word, Steps& steps) {
  const std::map<std::string, EventStyle> styles = {{"named", EventStyle::kNamed},
                                                    {"positional", EventStyle::kPositional},
                                                    {"refused", EventStyle::kRefuseFind},
                                                    {"refuseAdvise", EventStyle::kRefuseAdvise}};
  const EventStyle style = FaultWord(styles, word, "events");
  steps.push_back([style](Host& host) {
    if (host.events != nullptr) host.events->SetStyle(style);
  });
}

void AddStep(const std::string& member, const json& value, const json& fault, Steps& steps) {
  if (member == "clear") {
    steps.insert(steps.begin(), [](Host& host) { host.faults.Clear(); });
  } else if (member == "fail") {
    steps.push_back([failure = FailureFromJson(fault)](Host& host) { host.faults.Fail(failure); });
  } else if (member == "busy") {
    steps.push_back([busy = BusyFromJson(fault)](Host& host) { host.faults.Fail(busy); });
  } else if (member == "slow") {
    steps.push_back([delay = DelayFromJson(fault)](Host& host) { host.faults.Fail(delay); });
  } else if (member == "missing") {
    AddMissing(value, steps);
  } else if (member == "item") {
    AddItemForm(fault, steps);
  } else if (member == "events") {
    AddEvents(value, steps);
  } else if (member == "bulkValue2") {
    steps.push_back([times = TimesFromJson(value)](Host& host) { host.faults.failBulkGets = times; });
  } else if (member == "bulkPut") {
    steps.push_back([times = TimesFromJson(value)](Host& host) { host.faults.failBulkPuts = times; });
  } else if (member == "arrayAnswers") {
    steps.push_back([on = value.get<bool>()](Host& host) { host.faults.arrayAnswers = on; });
  } else if (member == "typedRange") {
    steps.push_back([on = value.get<bool>()](Host& host) { host.typedRange = on; });
  } else if (member == "windowWorkbook") {
    steps.push_back([on = value.get<bool>()](Host& host) { host.windowHasWorkbook = on; });
  } else if (!IsDetailOfFault(member) && member != "class") {
    ThrowBadFault("unknown member " + member);
  }
}

}  // namespace

Steps FaultStepsFromJson(const json& fault) {
  try {
    if (!fault.is_object() || fault.empty()) ThrowBadFault("an object with at least one member is wanted");
    Steps steps;
    for (const auto& [member, value] : fault.items())
      AddStep(member, value, fault, steps);
    if (steps.empty()) ThrowBadFault("nothing to do");
    return steps;
  } catch (const json::exception& error) {
    ThrowBadFault(error.what());
  } catch (const std::logic_error&) {
    // A code that is no number.
    ThrowBadFault("bad code");
  }
}

}  // namespace qv::devhost::memory
