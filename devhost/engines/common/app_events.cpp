#include "engines/common/app_events.h"

#include <olectl.h>

#include <array>
#include <utility>
#include <vector>

#include "engines/common/com_guard.h"

namespace qv::devhost {

AppEvents::AppEvents(IUnknown& owner, EventStyle style, REFIID events)
    : owner_(owner), style_(style), iid_(events) {}

void* AppEvents::Query(REFIID iid) {
  return IsEqualIID(iid, IID_IConnectionPointContainer) ? static_cast<IConnectionPointContainer*>(&container_)
                                                        : nullptr;
}

void AppEvents::Fire(DISPID event, std::span<const Variant> args) {
  std::vector<DWORD> cookies;
  for (const auto& [cookie, sink] : sinks_)
    cookies.push_back(cookie);
  for (const DWORD cookie : cookies) {
    const auto found = sinks_.find(cookie);
    if (found == sinks_.end()) continue;
    const ComPtr<IDispatch> sink = found->second;
    CallSink(*sink.Get(), event, args);
  }
}

bool AppEvents::FireBeforeClose(Variant workbook) {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  std::array<Variant, 2> args{std::move(workbook), Variant()};
  args[1].Get().vt = VT_BYREF | VT_BOOL;
  args[1].Get().pboolVal = &cancel;
  Fire(AppEvent::kWorkbookBeforeClose, args);
  return cancel != VARIANT_FALSE;
}

void AppEvents::CallSink(IDispatch& sink, DISPID event, std::span<const Variant> args) const {
  // Borrowed copies: the callee may not free them.
  std::vector<VARIANT> values;
  std::vector<DISPID> names;
  for (size_t i = 0; i < args.size(); ++i) {
    const bool named = style_ == EventStyle::kNamed;
    values.push_back(args[named ? i : args.size() - 1 - i].Get());
    if (named) names.push_back(static_cast<DISPID>(i));
  }
  DISPPARAMS params{values.data(), names.data(), static_cast<UINT>(values.size()),
                    static_cast<UINT>(names.size())};
  static_cast<void>(
      sink.Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr));
}

HRESULT AppEvents::Container::QueryInterface(REFIID iid, void** object) {
  return events_.owner_.QueryInterface(iid, object);
}

ULONG AppEvents::Container::AddRef() {
  return events_.owner_.AddRef();
}

ULONG AppEvents::Container::Release() {
  return events_.owner_.Release();
}

HRESULT AppEvents::Container::EnumConnectionPoints(IEnumConnectionPoints**) {
  return E_NOTIMPL;
}

HRESULT AppEvents::Container::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (point == nullptr) return E_POINTER;
  *point = nullptr;
  if (events_.style_ == EventStyle::kRefuseFind || !IsEqualIID(iid, events_.iid_)) {
    return CONNECT_E_NOCONNECTION;
  }
  events_.point_.AddRef();
  *point = &events_.point_;
  return S_OK;
}

HRESULT AppEvents::Point::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IConnectionPoint)) return E_NOINTERFACE;
  AddRef();
  *object = this;
  return S_OK;
}

ULONG AppEvents::Point::AddRef() {
  return events_.owner_.AddRef();
}

ULONG AppEvents::Point::Release() {
  return events_.owner_.Release();
}

HRESULT AppEvents::Point::GetConnectionInterface(IID* iid) {
  if (iid == nullptr) return E_POINTER;
  *iid = events_.iid_;
  return S_OK;
}

HRESULT AppEvents::Point::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (container == nullptr) return E_POINTER;
  events_.container_.AddRef();
  *container = &events_.container_;
  return S_OK;
}

HRESULT AppEvents::Point::Advise(IUnknown* sink, DWORD* cookie) {
  return GuardCom([&]() -> HRESULT {
    if (sink == nullptr || cookie == nullptr) return E_POINTER;
    *cookie = 0;
    if (events_.style_ == EventStyle::kRefuseAdvise) return CONNECT_E_CANNOTCONNECT;
    ComPtr<IDispatch> dispatch;
    // The host asks for the event interface itself; its pointer is an IDispatch.
    if (FAILED(sink->QueryInterface(events_.iid_, reinterpret_cast<void**>(dispatch.GetAddressOf())))) {
      return CONNECT_E_CANNOTCONNECT;
    }
    events_.sinks_.emplace(++events_.lastCookie_, std::move(dispatch));
    *cookie = events_.lastCookie_;
    return S_OK;
  });
}

HRESULT AppEvents::Point::Unadvise(DWORD cookie) {
  const auto found = events_.sinks_.find(cookie);
  if (found == events_.sinks_.end()) return CONNECT_E_NOCONNECTION;
  // The last reference may go with it, and its destructor may come back here.
  const ComPtr<IDispatch> keptAlive = std::move(found->second);
  events_.sinks_.erase(found);
  return S_OK;
}

HRESULT AppEvents::Point::EnumConnections(IEnumConnections**) {
  return E_NOTIMPL;
}

}  // namespace qv::devhost
