#pragma once

#include <oaidl.h>

#include "foundation/flag_scope.h"
#include "foundation/ui_slices.h"
#include "translation/translation_session.h"
#include "workbook/host_state.h"

namespace qv {

/// How long whoever finds a slice open, inside one of its calls of the host, waits before looking again.
inline constexpr UINT kWritePauseMs = USER_TIMER_MINIMUM;

/// One slice of writing the session's cells. While it lives the host's alerts and repainting are off, and the
/// session says that it is being written; a slice inside another one leaves that to the outer one. Host UI
/// thread.
class HostSlice {
 public:
  /// Both outlive the slice; a null `application` is allowed.
  HostSlice(IDispatch* application, TranslationSession& session)
      : writing_(session.isBeingWritten), alertsOff_(application), stillScreen_(application) {}

  /// Its time is up.
  [[nodiscard]] bool IsOver() const { return GetTickCount64() - begin_ >= kUiSliceMs; }

 private:
  /// The first to be set and the last to be cleared: the guards call the host too.
  FlagScope writing_;
  DisplayAlertsGuard alertsOff_;
  ScreenUpdatingGuard stillScreen_;
  ULONGLONG begin_ = GetTickCount64();
};

}  // namespace qv
