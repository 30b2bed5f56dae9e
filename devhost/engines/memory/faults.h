#pragma once

#include <oaidl.h>
#include <oleauto.h>
#include <windows.h>

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qv::devhost::memory {

/// How a failed call answers. A zero `exception` means that `hr` itself is the answer; otherwise the answer
/// is DISP_E_EXCEPTION with this code in EXCEPINFO. Thrown by member handlers, caught by Invoke.
struct HostError {
  HRESULT hr = DISP_E_EXCEPTION;
  SCODE exception = 0;
};

/// The host's general refusal.
inline constexpr SCODE kGeneralFailure = static_cast<SCODE>(0x800A03EC);
/// The host is editing a cell or showing a dialog.
inline constexpr SCODE kHostBusy = static_cast<SCODE>(0x800AC472);

/// Ways of calling a member that a fault applies to; the first three are the automation flags.
inline constexpr unsigned kOnMethod = DISPATCH_METHOD;
inline constexpr unsigned kOnGet = DISPATCH_PROPERTYGET;
inline constexpr unsigned kOnPut = DISPATCH_PROPERTYPUT;
inline constexpr unsigned kOnAnyCall = kOnMethod | kOnGet | kOnPut | DISPATCH_PROPERTYPUTREF;
/// The name lookup instead of the call.
inline constexpr unsigned kOnNameLookup = 0x100;

/// "Always" as a number of times.
inline constexpr long kAlways = -1;

/// One member that fails. The member is "Class.Member", "*.Member", "Class.*" or "*".
struct MemberFault {
  std::string member = "*";
  HostError error{DISP_E_EXCEPTION, kGeneralFailure};
  long times = kAlways;
  unsigned on = kOnAnyCall;
  /// Calls that still succeed before the first failure.
  long after = 0;
};

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

  /// Uses up one time of a counter such as `failBulkGets`; true while it is not used up.
  [[nodiscard]] static bool TakeOne(long& times);

 private:
  struct HookEntry {
    std::string member;
    Hook hook;
    bool before;
  };

  std::vector<MemberFault> faults_;
  std::set<std::string, std::less<>> hidden_;
  std::map<std::string, ItemForm, std::less<>> itemForms_;
  std::vector<HookEntry> hooks_;
  bool any_ = false;
};

}  // namespace qv::devhost::memory
