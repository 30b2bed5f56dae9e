#pragma once

#include <oaidl.h>

#include "foundation/variant.h"

namespace qv {

/// Switches the host's confirmation dialogs off for its lifetime and puts the former value back. Leaves a
/// host alone whose value cannot be read. Host UI thread.
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

/// Puts "ScreenUpdating"; false for a null Application or a refused put.
[[nodiscard]] bool SetScreenUpdating(IDispatch* application, bool on);

/// Switches "ScreenUpdating" on again, whatever it was; failure is ignored. Ends every run.
void RestoreScreenUpdating(IDispatch* application);

}  // namespace qv
