#pragma once

#include <oaidl.h>
#include <oleauto.h>
#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qv::devhost {

/// How a failed call answers. A zero `exception` means that `hr` itself is the answer; otherwise the answer
/// is DISP_E_EXCEPTION with this code in EXCEPINFO.
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

/// One member that fails or is slow. The member is "Class.Member", "*.Member", "Class.*" or "*".
struct MemberFault {
  std::string member = "*";
  HostError error{DISP_E_EXCEPTION, kGeneralFailure};
  long times = kAlways;
  unsigned on = kOnAnyCall;
  /// Calls that still succeed before the first failure.
  long after = 0;
  /// When not zero, the call takes that many milliseconds longer and does not fail.
  unsigned slowMs = 0;
};

/// The members of an object model that were asked to fail. Host UI thread.
class MemberFaults {
 public:
  void Fail(MemberFault fault) { faults_.push_back(std::move(fault)); }
  void Clear() { faults_.clear(); }
  /// The error of this call, if it is to fail; uses up one time of the fault. Takes its time for a call that
  /// is to be slow. `on` is one way of calling or,
  /// where the caller leaves it open, several.
  [[nodiscard]] std::optional<HostError> Take(std::string_view className, std::string_view member,
                                              unsigned on);

 private:
  std::vector<MemberFault> faults_;
};

/// Whether "Class.Member", "*.Member", "Class.*" or "*" means this member.
[[nodiscard]] bool MatchesMember(std::string_view pattern, std::string_view className,
                                 std::string_view member);

/// Uses up one of so many times; true while they are not used up.
[[nodiscard]] bool TakeOne(long& times);

}  // namespace qv::devhost
