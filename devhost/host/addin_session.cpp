#include "host/addin_session.h"

#include <memory>

namespace qv::devhost {
namespace {

constexpr wchar_t kProgId[] = L"ExcelAddin.Connect";

struct ArrayDestroyer {
  void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};

}  // namespace

AddinSession::AddinSession(IDispatch* application, ICTPFactory* factory, Manner manner, CallLog& log)
    : manner_(manner), log_(log) {
  CLSID classId{};
  log_.Require("CLSIDFromProgID ExcelAddin.Connect", CLSIDFromProgID(kProgId, &classId));
  log_.Require("CoCreateInstance ExcelAddin.Connect",
               CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDTExtensibility2),
                                reinterpret_cast<void**>(addin_.GetAddressOf())));
  if (manner_.withInstance) instance_ = MakeCom<AddinInstance>(kProgId);
  log_.Require("OnConnection", WithCustom([&](SAFEARRAY** custom) {
                 return addin_->OnConnection(application, manner_.mode, instance_.Get(), custom);
               }));
  if (factory != nullptr) OfferFactory(factory);
  AskForRibbon();
  log_.Add("OnStartupComplete",
           WithCustom([&](SAFEARRAY** custom) { return addin_->OnStartupComplete(custom); }));
}

AddinSession::~AddinSession() {
  Disconnect();
}

template <typename Call>
HRESULT AddinSession::WithCustom(Call&& call) {
  if (manner_.nullCustom) return call(nullptr);
  const std::unique_ptr<SAFEARRAY, ArrayDestroyer> custom(SafeArrayCreateVector(VT_VARIANT, 1, 0));
  SAFEARRAY* array = custom.get();
  return call(&array);
}

void AddinSession::OfferFactory(ICTPFactory* factory) {
  ComPtr<ICustomTaskPaneConsumer> consumer;
  const HRESULT hr = addin_->QueryInterface(__uuidof(ICustomTaskPaneConsumer),
                                            reinterpret_cast<void**>(consumer.GetAddressOf()));
  if (SUCCEEDED(log_.Add("ICustomTaskPaneConsumer", hr))) {
    log_.Add("CTPFactoryAvailable", consumer->CTPFactoryAvailable(factory));
  }
}

void AddinSession::AskForRibbon() {
  ComPtr<IRibbonExtensibility> ribbon;
  const HRESULT hr =
      addin_->QueryInterface(__uuidof(IRibbonExtensibility), reinterpret_cast<void**>(ribbon.GetAddressOf()));
  if (FAILED(log_.Add("IRibbonExtensibility", hr))) return;
  const Bstr id(L"Microsoft.Excel.Workbook");
  Bstr xml;
  if (FAILED(log_.Add("GetCustomUI", ribbon->GetCustomUI(id.Get(), xml.Put())))) return;
  ribbonXml_ = xml.View();
  // The callbacks are found through this very interface, which need not be the object's main one.
  ComPtr<IDispatch> callbacks;
  if (SUCCEEDED(log_.Add("ribbon IDispatch", ribbon.As(&callbacks))))
    ribbon_ = std::make_unique<Ribbon>(callbacks, ribbonXml_, log_);
}

void AddinSession::BeginShutdown() {
  if (!addin_ || std::exchange(isShuttingDown_, true)) return;
  log_.Add("OnBeginShutdown",
           WithCustom([&](SAFEARRAY** custom) { return addin_->OnBeginShutdown(custom); }));
}

ULONG AddinSession::Disconnect(ext_DisconnectMode mode) {
  if (!addin_) return 0;
  if (mode == ext_dm_HostShutdown) BeginShutdown();
  log_.Add("OnDisconnection",
           WithCustom([&](SAFEARRAY** custom) { return addin_->OnDisconnection(mode, custom); }));
  if (instance_) instance_->Clear();
  instance_.Reset();
  ribbon_.reset();
  return addin_.Detach()->Release();
}

}  // namespace qv::devhost
