#pragma once

#include <oaidl.h>

#include "foundation/variant.h"
#include "workbook/automation.h"

namespace qv {

// The two switches of the host that a bulk operation turns off. A busy host may refuse to have one turned
// back; its former value is then owed: it is remembered for the process until a later guard on the same
// Application or `RestoreOwedHostState` puts it back. Host UI thread.

/// Switches the host's confirmation dialogs off for its lifetime and puts the former value back. Leaves a
/// host alone whose value cannot be read.
class DisplayAlertsGuard {
 public:
  /// Null is allowed and does nothing.
  explicit DisplayAlertsGuard(IDispatch* application);
  DisplayAlertsGuard(const DisplayAlertsGuard&) = delete;
  DisplayAlertsGuard& operator=(const DisplayAlertsGuard&) = delete;
  ~DisplayAlertsGuard();

 private:
  ComPtr<IDispatch> application_;
  Variant saved_;
  bool changed_ = false;
};

/// Switches "ScreenUpdating" off for its lifetime and on again at its end, whatever it was. Does nothing at
/// its end for a host that refused to switch it off.
class ScreenUpdatingGuard {
 public:
  /// Null is allowed and does nothing.
  explicit ScreenUpdatingGuard(IDispatch* application);
  ScreenUpdatingGuard(const ScreenUpdatingGuard&) = delete;
  ScreenUpdatingGuard& operator=(const ScreenUpdatingGuard&) = delete;
  ~ScreenUpdatingGuard();

 private:
  ComPtr<IDispatch> application_;
  bool changed_ = false;
};

/// How the host answers a question that it can always answer unless it is busy: where something is missing,
/// this tells a busy host from one without it.
[[nodiscard]] HostAnswer AskHost(IDispatch* application);

/// Puts "ScreenUpdating"; false for a null Application or a refused put.
[[nodiscard]] bool SetScreenUpdating(IDispatch* application, bool on);

/// Switches "ScreenUpdating" on again, whatever it was; ends every run. A busy host's refusal is owed, any
/// other failure is ignored.
void RestoreScreenUpdating(IDispatch* application);

/// Puts back what is owed to the Application. True when nothing is owed any more; false when the host refuses
/// again and should be asked later.
[[nodiscard]] bool RestoreOwedHostState(IDispatch* application);

}  // namespace qv
