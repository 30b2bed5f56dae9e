#include "host/control_container.h"

#include <olectl.h>

#include "foundation/text.h"
#include "host/class_registration.h"

namespace qv::devhost {
namespace {

constexpr int kHimetricPerInch = 2540;

/// Reads the count on the way out: nothing else tells a host that it leaves something behind.
template <typename Interface>
ULONG ReleaseLast(ComPtr<Interface>& object) {
  Interface* raw = object.Detach();
  return raw ? raw->Release() : 0;
}

}  // namespace

ControlContainer::ControlContainer(const std::wstring& progId, HWND window, CallLog& log)
    : window_(window), log_(log), site_(new ContainerSite(window, log)) {
  try {
    Create(progId);
    Prepare();
    log_.Require("DoVerb OLEIVERB_INPLACEACTIVATE", DoVerb(OLEIVERB_INPLACEACTIVATE));
    log_.Require("IOleInPlaceObject", object_.As(&inPlace_));
    Resize();
  } catch (...) {
    Close();
    throw;
  }
}

ControlContainer::~ControlContainer() {
  Close();
}

void ControlContainer::Create(const std::wstring& progId) {
  const NamedLock classes = LockClasses();
  CLSID classId{};
  const std::string name = ToUtf8(progId);
  log_.Require("CLSIDFromProgID " + name, CLSIDFromProgID(progId.c_str(), &classId));
  log_.Require("CoCreateInstance " + name, CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER,
                                                            IID_PPV_ARGS(object_.GetAddressOf())));
}

void ControlContainer::Prepare() {
  DWORD status = 0;
  log_.Require("GetMiscStatus", object_->GetMiscStatus(DVASPECT_CONTENT, &status));
  log_.Require("SetClientSite", object_->SetClientSite(site_));
  ComPtr<IPersistStreamInit> persist;
  if (SUCCEEDED(object_.As(&persist))) log_.Add("IPersistStreamInit.InitNew", persist->InitNew());
  log_.Add("SetHostNames", object_->SetHostNames(L"Development host", L"Task pane"));
  const RECT area = ClientArea();
  SIZEL extent{MulDiv(area.right, kHimetricPerInch, USER_DEFAULT_SCREEN_DPI),
               MulDiv(area.bottom, kHimetricPerInch, USER_DEFAULT_SCREEN_DPI)};
  log_.Add("SetExtent", object_->SetExtent(DVASPECT_CONTENT, &extent));
}

RECT ControlContainer::ClientArea() const {
  RECT area{};
  GetClientRect(window_, &area);
  return area;
}

ComPtr<IDispatch> ControlContainer::Control() const {
  ComPtr<IDispatch> control;
  if (object_) static_cast<void>(object_.As(&control));
  return control;
}

HWND ControlContainer::ControlWindow() const {
  HWND window = nullptr;
  return inPlace_ && SUCCEEDED(inPlace_->GetWindow(&window)) ? window : nullptr;
}

void ControlContainer::Resize() {
  if (!inPlace_) return;
  const RECT area = ClientArea();
  log_.Add("SetObjectRects", inPlace_->SetObjectRects(&area, &area));
}

HRESULT ControlContainer::DoVerb(LONG verb) {
  if (!object_) return E_UNEXPECTED;
  const RECT area = ClientArea();
  return object_->DoVerb(verb, nullptr, site_, 0, window_, &area);
}

ControlContainer::Leaks ControlContainer::Close() {
  if (site_ == nullptr) return {};
  if (inPlace_) {
    log_.Add("UIDeactivate", inPlace_->UIDeactivate());
    log_.Add("InPlaceDeactivate", inPlace_->InPlaceDeactivate());
  }
  inPlace_.Reset();
  if (object_) {
    log_.Add("Close", object_->Close(OLECLOSE_NOSAVE));
    log_.Add("SetClientSite null", object_->SetClientSite(nullptr));
  }
  Leaks leaks;
  leaks.control = ReleaseLast(object_);
  site_->Detach();
  leaks.site = std::exchange(site_, nullptr)->Release();
  return leaks;
}

}  // namespace qv::devhost
