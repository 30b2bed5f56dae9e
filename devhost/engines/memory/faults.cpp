#include "engines/memory/faults.h"

#include <utility>

namespace qv::devhost::memory {

void Faults::Clear() {
  *this = Faults();
}

void Faults::Fail(MemberFault fault) {
  faults_.Fail(std::move(fault));
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
    if (MatchesMember(pattern, className, member)) return true;
  }
  return false;
}

ItemForm Faults::ItemFormOf(std::string_view className) const {
  auto found = itemForms_.find(className);
  if (found == itemForms_.end()) found = itemForms_.find("*");
  return found == itemForms_.end() ? ItemForm::kEvery : found->second;
}

std::optional<HostError> Faults::Take(std::string_view className, std::string_view member, unsigned on) {
  return faults_.Take(className, member, on);
}

void Faults::RunHooks(std::string_view className, std::string_view member, bool before) {
  // Copied first: a hook may clear this table, and with it itself.
  std::vector<Hook> matching;
  for (const HookEntry& entry : hooks_) {
    if (entry.before == before && MatchesMember(entry.member, className, member))
      matching.push_back(entry.hook);
  }
  for (const Hook& hook : matching)
    hook();
}

}  // namespace qv::devhost::memory
