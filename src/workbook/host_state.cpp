#include "workbook/host_state.h"

#include <map>
#include <optional>
#include <utility>

#include "foundation/guard.h"
#include "workbook/automation.h"

namespace qv {
namespace {

constexpr const wchar_t* kDisplayAlerts = L"DisplayAlerts";
constexpr const wchar_t* kScreenUpdating = L"ScreenUpdating";

/// What one Application has still to get back.
struct OwedState {
  std::optional<Variant> displayAlerts;
  bool screenUpdating = false;

  [[nodiscard]] bool IsSettled() const { return !displayAlerts && !screenUpdating; }
};

/// Keyed by COM identity, which is only compared: a reference held here would keep the host alive at its end.
using OwedTable = std::map<const void*, OwedState>;

OwedTable& Owed() {
  static OwedTable table;
  return table;
}

const void* IdentityOf(IDispatch* object) {
  ComPtr<IUnknown> identity;
  if (object == nullptr || FAILED(object->QueryInterface(IID_PPV_ARGS(&identity)))) return object;
  return identity.Get();
}

/// Changes what is owed to one Application and forgets it once nothing is.
template <typename Change>
void UpdateOwed(IDispatch* application, Change&& change) {
  const void* const key = IdentityOf(application);
  if (key == nullptr) return;
  OwedState& state = Owed()[key];
  std::forward<Change>(change)(state);
  if (state.IsSettled()) Owed().erase(key);
}

void PutAlertsBack(IDispatch* application, const Variant& value) {
  const bool back = SUCCEEDED(PutDispProperty(application, kDisplayAlerts, &value));
  UpdateOwed(application,
             [&](OwedState& state) { state.displayAlerts = back ? std::nullopt : std::optional(value); });
}

HostAnswer PutScreenOn(IDispatch* application) {
  return PutProperty(application, kScreenUpdating, Variant::Short(VARIANT_TRUE));
}

void OweScreen(IDispatch* application, bool owed) {
  UpdateOwed(application, [owed](OwedState& state) { state.screenUpdating = owed; });
}

}  // namespace

DisplayAlertsGuard::DisplayAlertsGuard(IDispatch* application) : application_(application) {
  // A debt is taken over: what can be read now is only the "off" of the guard that could not end.
  std::optional<Variant> owed;
  UpdateOwed(application,
             [&owed](OwedState& state) { owed = std::exchange(state.displayAlerts, std::nullopt); });
  if (owed) {
    saved_ = *std::move(owed);
    changed_ = true;
  } else if (FAILED(GetProperty(application, kDisplayAlerts, saved_))) {
    return;
  }
  const Variant off = Variant::Short(0);
  if (SUCCEEDED(PutDispProperty(application, kDisplayAlerts, &off))) changed_ = true;
}

DisplayAlertsGuard::~DisplayAlertsGuard() {
  if (!changed_ || saved_.Type() == VT_EMPTY) return;
  Guard(L"DisplayAlertsGuard", [this] { PutAlertsBack(application_.Get(), saved_); });
}

ScreenUpdatingGuard::ScreenUpdatingGuard(IDispatch* application) : application_(application) {
  UpdateOwed(application,
             [this](OwedState& state) { changed_ = std::exchange(state.screenUpdating, false); });
  if (SetScreenUpdating(application, false)) changed_ = true;
}

ScreenUpdatingGuard::~ScreenUpdatingGuard() {
  if (!changed_) return;
  Guard(L"ScreenUpdatingGuard", [this] {
    IDispatch* const application = application_.Get();
    OweScreen(application, !PutScreenOn(application).Ok());
  });
}

HostAnswer AskHost(IDispatch* application) {
  HostAnswer answer;
  Variant ignored;
  answer.hr = GetProperty(application, L"ActiveWorkbook", ignored, &answer.exceptionCode);
  return answer;
}

bool SetScreenUpdating(IDispatch* application, bool on) {
  const Variant value(on);
  return SUCCEEDED(PutDispProperty(application, kScreenUpdating, &value));
}

void RestoreScreenUpdating(IDispatch* application) {
  const HostAnswer answer = PutScreenOn(application);
  OweScreen(application, answer.IsBusy());
}

bool RestoreOwedHostState(IDispatch* application) {
  const void* const key = IdentityOf(application);
  const auto found = Owed().find(key);
  if (found == Owed().end()) return true;
  // Copied, because a host that is called may call back and change the table.
  const OwedState owed = found->second;
  if (owed.displayAlerts) PutAlertsBack(application, *owed.displayAlerts);
  if (owed.screenUpdating) OweScreen(application, !PutScreenOn(application).Ok());
  return !Owed().contains(key);
}

}  // namespace qv
