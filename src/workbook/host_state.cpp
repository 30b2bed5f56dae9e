#include "workbook/host_state.h"

#include "foundation/guard.h"
#include "workbook/automation.h"

namespace qv {
namespace {

constexpr const wchar_t* kDisplayAlerts = L"DisplayAlerts";
constexpr const wchar_t* kScreenUpdating = L"ScreenUpdating";

}  // namespace

DisplayAlertsGuard::DisplayAlertsGuard(IDispatch* application) : application_(application) {
  if (FAILED(GetProperty(application, kDisplayAlerts, saved_))) return;
  const Variant off = Variant::Short(0);
  changed_ = SUCCEEDED(PutDispProperty(application, kDisplayAlerts, &off));
}

DisplayAlertsGuard::~DisplayAlertsGuard() {
  if (!changed_ || saved_.Type() == VT_EMPTY) return;
  Guard(L"DisplayAlertsGuard",
        [this] { static_cast<void>(PutDispProperty(application_.Get(), kDisplayAlerts, &saved_)); });
}

bool SetScreenUpdating(IDispatch* application, bool on) {
  const Variant value(on);
  return SUCCEEDED(PutDispProperty(application, kScreenUpdating, &value));
}

void RestoreScreenUpdating(IDispatch* application) {
  const Variant on = Variant::Short(VARIANT_TRUE);
  static_cast<void>(PutDispProperty(application, kScreenUpdating, &on));
}

}  // namespace qv
