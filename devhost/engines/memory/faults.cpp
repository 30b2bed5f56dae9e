#include "engines/memory/faults.h"

#include <utility>

namespace qv::devhost::memory {
namespace {

bool Matches(std::string_view pattern, std::string_view className, std::string_view member) {
  if (pattern == "*") return true;
  const size_t dot = pattern.find('.');
  if (dot == std::string_view::npos) return false;
  const std::string_view classPattern = pattern.substr(0, dot);
  const std::string_view memberPattern = pattern.substr(dot + 1);
  return (classPattern == "*" || classPattern == className) &&
         (memberPattern == "*" || memberPattern == member);
}

}  // namespace

void Faults::Clear() {
  *this = Faults();
}

void Faults::Fail(MemberFault fault) {
  faults_.push_back(std::move(fault));
  any_ = true;
}

void Faults::Hide(const std::string& member) {
  hidden_.insert(member);
  any_ = true;
}

void Faults::SetItemForm(const std::string& className, ItemForm form) {
  itemForms_[className] = form;
  any_ = true;
}

void Faults::OnCall(const std::string& member, Hook hook, bool before) {
  hooks_.push_back({member, std::move(hook), before});
  any_ = true;
}

bool Faults::IsHidden(std::string_view className, std::string_view member) const {
  for (const std::string& pattern : hidden_) {
    if (Matches(pattern, className, member)) return true;
  }
  return false;
}

ItemForm Faults::ItemFormOf(std::string_view className) const {
  auto found = itemForms_.find(className);
  if (found == itemForms_.end()) found = itemForms_.find("*");
  return found == itemForms_.end() ? ItemForm::kEvery : found->second;
}

std::optional<HostError> Faults::Take(std::string_view className, std::string_view member, unsigned on) {
  for (MemberFault& fault : faults_) {
    if ((fault.on & on) == 0 || fault.times == 0 || !Matches(fault.member, className, member)) continue;
    if (fault.after > 0) {
      --fault.after;
      continue;
    }
    if (TakeOne(fault.times)) return fault.error;
  }
  return std::nullopt;
}

void Faults::RunHooks(std::string_view className, std::string_view member, bool before) {
  // Copied first: a hook may clear this table, and with it itself.
  std::vector<Hook> matching;
  for (const HookEntry& entry : hooks_) {
    if (entry.before == before && Matches(entry.member, className, member)) matching.push_back(entry.hook);
  }
  for (const Hook& hook : matching)
    hook();
}

bool Faults::TakeOne(long& times) {
  if (times == 0) return false;
  if (times > 0) --times;
  return true;
}

}  // namespace qv::devhost::memory
