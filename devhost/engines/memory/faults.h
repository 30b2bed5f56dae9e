#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/member_faults.h"

namespace qv::devhost::memory {

using qv::devhost::HostError;
using qv::devhost::kAlways;
using qv::devhost::kGeneralFailure;
using qv::devhost::kHostBusy;
using qv::devhost::kOnAnyCall;
using qv::devhost::kOnGet;
using qv::devhost::kOnMethod;
using qv::devhost::kOnNameLookup;
using qv::devhost::kOnPut;
using qv::devhost::MemberFault;

/// The only form in which a collection offers its items; hosts differ.
enum class ItemForm { kEvery, kPropertyOnly, kMethodOnly, kDefaultOnly };

/// Everything that was asked to go wrong, and the callbacks of tests. Empty in normal operation, then one
/// flag is all that a call looks at. Host UI thread.
class Faults {
 public:
  using Hook = std::function<void()>;

  void Clear();

  void Fail(MemberFault fault);
  /// The member is unknown to the name lookup and to calls by number.
  void Hide(const std::string& member);
  void SetItemForm(const std::string& className, ItemForm form);
  /// Runs `hook` at every call of the member (a name or pattern as in MemberFault): before the member does
  /// its work, or after it. The hook may do anything to the model, this table included.
  void OnCall(const std::string& member, Hook hook, bool before = true);

  /// Reads and writes of several cells at once through Value, Value2 and Formula fail this many times.
  long failBulkGets = 0;
  long failBulkPuts = 0;
  /// HasFormula and MergeCells of several cells answer an array, one boolean a cell.
  bool arrayAnswers = false;

  [[nodiscard]] bool Any() const { return any_; }
  [[nodiscard]] bool IsHidden(std::string_view className, std::string_view member) const;
  [[nodiscard]] ItemForm ItemFormOf(std::string_view className) const;
  /// The error of this call, if it is to fail; uses up one time of the fault.
  [[nodiscard]] std::optional<HostError> Take(std::string_view className, std::string_view member,
                                              unsigned on);
  void RunHooks(std::string_view className, std::string_view member, bool before);

 private:
  struct HookEntry {
    std::string member;
    Hook hook;
    bool before;
  };

  MemberFaults faults_;
  std::set<std::string, std::less<>> hidden_;
  std::map<std::string, ItemForm, std::less<>> itemForms_;
  std::vector<HookEntry> hooks_;
  bool any_ = false;
};

}  // namespace qv::devhost::memory
