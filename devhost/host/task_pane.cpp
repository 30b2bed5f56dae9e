#include "host/task_pane.h"

#include <array>

#include "engines/common/com_guard.h"
#include "foundation/flag_scope.h"
#include "webview2/put_value.h"

namespace qv::devhost {
namespace {

// Dispatch ids of the members, as Office publishes them.
enum MemberId : DISPID {
  kTitle = 0,
  kApplication = 1,
  kWindow = 2,
  kVisible = 3,
  kContentControl = 4,
  kHeight = 5,
  kWidth = 6,
  kDockPosition = 7,
  kDockPositionRestrict = 8,
  kDelete = 9,
};

// Those of the events.
constexpr DISPID kVisibleStateChange = 1;
constexpr DISPID kDockPositionStateChange = 2;

constexpr std::array<DispatchName, 10> kNames = {{
    {L"Title", kTitle},
    {L"Application", kApplication},
    {L"Window", kWindow},
    {L"Visible", kVisible},
    {L"ContentControl", kContentControl},
    {L"Height", kHeight},
    {L"Width", kWidth},
    {L"DockPosition", kDockPosition},
    {L"DockPositionRestrict", kDockPositionRestrict},
    {L"Delete", kDelete},
}};

HRESULT ReturnObject(const ComPtr<IDispatch>& object, IDispatch** result) {
  if (result == nullptr) return E_POINTER;
  *result = ComPtr<IDispatch>(object).Detach();
  return S_OK;
}

}  // namespace

TaskPane::TaskPane(std::shared_ptr<PaneFrame> frame, ComPtr<IDispatch> application, ComPtr<IDispatch> window)
    : frame_(std::move(frame)),
      application_(std::move(application)),
      window_(std::move(window)),
      events_(*this, EventStyle::kPositional, __uuidof(_CustomTaskPaneEvents)) {
  frame_->SetObservers([this] { Fire(kVisibleStateChange); }, [this] { Fire(kDockPositionStateChange); });
}

TaskPane::~TaskPane() {
  frame_->SetObservers(nullptr, nullptr);
}

HRESULT TaskPane::QueryInterface(REFIID iid, void** object) noexcept {
  const HRESULT own = HostDispatch::QueryInterface(iid, object);
  if (own != E_NOINTERFACE) return own;
  *object = events_.Query(iid);
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

void TaskPane::Fire(DISPID event) {
  // A sink may let go of the last reference.
  const ComPtr<IDispatch> keptAlive(this);
  const FlagScope firing(isFiring_);
  const std::array args{Variant(keptAlive.Get())};
  events_.Fire(event, args);
}

std::span<const DispatchName> TaskPane::Names() const noexcept {
  return kNames;
}

HRESULT TaskPane::get_Title(BSTR* title) noexcept {
  return GuardCom([&] { return PutValue(title, Bstr(frame_->Title()).Detach()); });
}

HRESULT TaskPane::get_Application(IDispatch** application) noexcept {
  return ReturnObject(application_, application);
}

HRESULT TaskPane::get_Window(IDispatch** window) noexcept {
  return ReturnObject(window_, window);
}

HRESULT TaskPane::get_Visible(VARIANT_BOOL* visible) noexcept {
  if (!frame_->IsOpen()) return E_FAIL;
  return PutValue(visible, frame_->IsVisible() ? VARIANT_TRUE : VARIANT_FALSE);
}

HRESULT TaskPane::put_Visible(VARIANT_BOOL visible) noexcept {
  if (!frame_->IsOpen() || refusesToShow_) return E_FAIL;
  return GuardCom([&] { return frame_->SetVisible(visible != VARIANT_FALSE), S_OK; });
}

HRESULT TaskPane::get_ContentControl(IDispatch** control) noexcept {
  if (!frame_->IsOpen() || withholdsControl_) return E_FAIL;
  return ReturnObject(frame_->Container().Control(), control);
}

HRESULT TaskPane::get_Height(int* height) noexcept {
  return frame_->IsOpen() ? PutValue(height, frame_->HeightPt()) : E_FAIL;
}

HRESULT TaskPane::put_Height(int height) noexcept {
  if (isFiring_) return E_FAIL;
  return GuardCom([&] { return frame_->SetHeightPt(height) ? S_OK : E_FAIL; });
}

HRESULT TaskPane::get_Width(int* width) noexcept {
  return frame_->IsOpen() ? PutValue(width, frame_->WidthPt()) : E_FAIL;
}

HRESULT TaskPane::put_Width(int width) noexcept {
  if (isFiring_) return E_FAIL;
  if (overridesLeft_ > 0) {
    --overridesLeft_;
    width = ownWidth_;
  }
  return GuardCom([&] { return frame_->SetWidthPt(width) ? S_OK : E_FAIL; });
}

HRESULT TaskPane::get_DockPosition(MsoCTPDockPosition* position) noexcept {
  if (!frame_->IsOpen()) return E_FAIL;
  return PutValue(position, static_cast<MsoCTPDockPosition>(frame_->Dock()));
}

HRESULT TaskPane::put_DockPosition(MsoCTPDockPosition position) noexcept {
  if (position < msoCTPDockPositionLeft || position > msoCTPDockPositionFloating) return E_INVALIDARG;
  if (!frame_->IsOpen()) return E_FAIL;
  return GuardCom([&] { return frame_->SetDock(static_cast<PaneDock>(position)), S_OK; });
}

HRESULT TaskPane::get_DockPositionRestrict(MsoCTPDockPositionRestrict* restrict) noexcept {
  return PutValue(restrict, dockRestrict_);
}

HRESULT TaskPane::put_DockPositionRestrict(MsoCTPDockPositionRestrict restrict) noexcept {
  dockRestrict_ = restrict;
  return S_OK;
}

HRESULT TaskPane::Delete() noexcept {
  events_.DisconnectAll();
  return GuardCom([&] { return frame_->Close(), S_OK; });
}

HRESULT TaskPane::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                         EXCEPINFO*, UINT*) noexcept {
  return GuardCom([&]() -> HRESULT {
    if (id == kDelete && (flags & DISPATCH_METHOD) != 0) return Delete();
    if ((flags & DISPATCH_PROPERTYPUT) != 0) {
      return arguments && arguments->cArgs == 1 ? Put(id, arguments->rgvarg[0]) : DISP_E_BADPARAMCOUNT;
    }
    if ((flags & DISPATCH_PROPERTYGET) == 0) return DISP_E_MEMBERNOTFOUND;
    Variant value;
    const HRESULT hr = Get(id, value.Get());
    if (SUCCEEDED(hr) && result != nullptr) *result = value.Detach();
    return hr;
  });
}

HRESULT TaskPane::Get(DISPID id, VARIANT& value) {
  const auto typed = [&value](VARTYPE type, HRESULT hr) {
    if (SUCCEEDED(hr)) value.vt = type;
    return hr;
  };
  int number = 0;
  HRESULT hr = S_OK;
  switch (id) {
    case kTitle:
      return typed(VT_BSTR, get_Title(&value.bstrVal));
    case kApplication:
      return typed(VT_DISPATCH, get_Application(&value.pdispVal));
    case kWindow:
      return typed(VT_DISPATCH, get_Window(&value.pdispVal));
    case kVisible:
      return typed(VT_BOOL, get_Visible(&value.boolVal));
    case kContentControl:
      return typed(VT_DISPATCH, get_ContentControl(&value.pdispVal));
    case kHeight:
      hr = get_Height(&number);
      break;
    case kWidth:
      hr = get_Width(&number);
      break;
    case kDockPosition:
      number = static_cast<int>(frame_->Dock());
      hr = frame_->IsOpen() ? S_OK : E_FAIL;
      break;
    case kDockPositionRestrict:
      number = dockRestrict_;
      break;
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
  value.lVal = number;
  return typed(VT_I4, hr);
}

HRESULT TaskPane::Put(DISPID id, const VARIANT& value) {
  Variant converted(value);
  const VARTYPE type = id == kVisible ? VT_BOOL : VT_I4;
  const HRESULT hr = VariantChangeType(&converted.Get(), &converted.Get(), 0, type);
  if (FAILED(hr)) return hr;
  const int number = static_cast<int>(converted->lVal);
  switch (id) {
    case kVisible:
      return put_Visible(converted->boolVal);
    case kHeight:
      return put_Height(number);
    case kWidth:
      return put_Width(number);
    case kDockPosition:
      return put_DockPosition(static_cast<MsoCTPDockPosition>(number));
    case kDockPositionRestrict:
      return put_DockPositionRestrict(static_cast<MsoCTPDockPositionRestrict>(number));
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

}  // namespace qv::devhost
