#include "panel/app_events.h"

#include <algorithm>
#include <array>
#include <utility>

#include "foundation/guard.h"
#include "panel/dispatch_arguments.h"

namespace qv {
namespace {

struct EventRow {
  DISPID id;
  HostEventKind kind;
  /// The first parameter is the sheet.
  bool hasSheet;
};

// Dispatch ids of Excel's event interface; WPS uses the same.
constexpr std::array kEvents = {
    EventRow{1558, HostEventKind::kSelectionChanged, true},
    EventRow{1561, HostEventKind::kSheetActivated, true},
    EventRow{1564, HostEventKind::kSheetChanged, true},
    EventRow{1556, HostEventKind::kWindowActivated, false},
};

class Sink final : public ComObject<IExcelAppEvents> {
 public:
  explicit Sink(std::weak_ptr<AppEvents::Listener> listener) : listener_(std::move(listener)) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
    return DISP_E_UNKNOWNNAME;
  }

  /// The host does nothing with a failure, so an event that nobody listens to is S_OK as well.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept override {
    return GuardHr(L"AppEvents", [&] {
      const auto* const row = std::find_if(kEvents.begin(), kEvents.end(),
                                           [&](const EventRow& candidate) { return candidate.id == id; });
      const auto listener = listener_.lock();
      if (row == kEvents.end() || listener == nullptr) return S_OK;
      HostEvent event{row->kind, nullptr};
      if (row->hasSheet) event.sheet = ObjectArgument(params, 0);
      (*listener)(event);
      return S_OK;
    });
  }

 private:
  std::weak_ptr<AppEvents::Listener> listener_;
};

}  // namespace

HRESULT AppEvents::Subscribe(IDispatch* application, Listener listener) {
  Unsubscribe();
  if (application == nullptr) return E_POINTER;
  ComPtr<IConnectionPointContainer> container;
  HRESULT hr = application->QueryInterface(IID_PPV_ARGS(&container));
  if (FAILED(hr)) return hr;
  ComPtr<IConnectionPoint> point;
  hr = container->FindConnectionPoint(__uuidof(IExcelAppEvents), &point);
  if (FAILED(hr)) return hr;

  listener_ = std::make_shared<Listener>(std::move(listener));
  const ComPtr<Sink> sink = MakeCom<Sink>(listener_);
  hr = point->Advise(sink.Get(), &cookie_);
  if (FAILED(hr)) {
    listener_.reset();
    return hr;
  }
  point_ = std::move(point);
  return S_OK;
}

void AppEvents::Unsubscribe() {
  listener_.reset();
  // A host that is shutting down may have dropped the connection already.
  if (const ComPtr<IConnectionPoint> point = std::move(point_)) static_cast<void>(point->Unadvise(cookie_));
}

}  // namespace qv
