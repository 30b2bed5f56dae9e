#include "addin/connect.h"

#include <algorithm>
#include <atomic>
#include <string>

#include "addin/host_detection.h"
#include "addin/ribbon_names.h"
#include "addin/ribbon_xml.h"
#include "addin/welcome.h"
#include "foundation/guard.h"
#include "foundation/host_session.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "foundation/settings.h"
#include "foundation/text.h"
#include "panel/dispatch_arguments.h"
#include "panel/pane_registry.h"
#include "panel/web_view2_pane.h"
#include "workbook/automation.h"

namespace qv {
namespace {

/// The object that holds the process's host session; null while not connected. A host may create a second
/// connection object before it lets go of the first.
CConnect* g_connected = nullptr;

/// The host has opened its windows by then.
constexpr UINT kWelcomeDelayMs = 2000;

void AnnounceOncePerProcess() {
  static std::atomic<bool> announced{false};
  bool expected = false;
  if (announced.compare_exchange_strong(expected, true)) SendBeacon(L"addin:loaded", L"client");
}

}  // namespace

CConnect::~CConnect() {
  // A host that never disconnects still must not leave the session to a dead object.
  Guard(L"CConnect", [this] { EndConnection(); });
}

HRESULT CConnect::GetTypeInfoCount(UINT* count) noexcept {
  return typeInfo_.GetTypeInfoCount(count);
}

HRESULT CConnect::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  return GuardHr(L"GetTypeInfo", [&] { return typeInfo_.GetTypeInfo(index, info); });
}

HRESULT CConnect::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  return GuardHr(L"GetIDsOfNames", [&]() -> HRESULT {
    if (names == nullptr || ids == nullptr || count == 0 || names[0] == nullptr) return E_INVALIDARG;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const HRESULT hr = FindNames(names, count, ids);
    PaneLog(Concat(L"Excel GetIDsOfNames ", names[0], L" -> ", ids[0], L"\r\n"));
    return hr;
  });
}

HRESULT CConnect::FindNames(LPOLESTR* names, UINT count, DISPID* ids) {
  const auto known = RibbonDispId(names[0]);
  if (!known) return typeInfo_.GetIDsOfNames(names, count, ids);
  // The type library holds some of the callbacks, with their arguments.
  const HRESULT hr = count == 1 ? S_OK : typeInfo_.GetIDsOfNames(names, count, ids);
  ids[0] = *known;
  return hr;
}

HRESULT CConnect::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result, EXCEPINFO*,
                         UINT*) noexcept {
  return GuardHr(L"Invoke", [&]() -> HRESULT {
    PaneLog(Concat(L"Excel Invoke ribbon dispid=", id, L"\r\n"));
    if (!IsRibbonDispId(id)) return DISP_E_MEMBERNOTFOUND;
    if (id == kRibbonGetImage && result == nullptr) return E_POINTER;
    if (result != nullptr) VariantInit(result);
    // A press may run a dialog, inside which the host may let go of the add-in.
    const ComPtr<IRibbonCallback> keptAlive(this);
    Guard(L"Ribbon", [&] { ribbon_.Call(id, ObjectArgument(params, 0).Get(), result); });
    return S_OK;
  });
}

HRESULT CConnect::OnConnection(IDispatch* application, ext_ConnectMode, IDispatch*, SAFEARRAY**) noexcept {
  // A failure here would make the host disable the add-in for good.
  Guard(L"OnConnection", [&] { Connect(application); });
  return S_OK;
}

void CConnect::Connect(IDispatch* application) {
  const std::wstring name = GetStringProperty(application, L"Name");
  const bool wps = IsWpsApplication(name, GetStringProperty(application, L"Path"));
  HostSession& session = HostSession::Get();
  session.Connect(application, wps ? HostKind::kWpsExcel : HostKind::kExcel,
                  GetStringProperty(application, L"Version"));
  g_connected = this;
  PaneLog(Concat(L"Excel OnConnection hostApp=", HostKindText(session.Kind()), L" appName=",
                 name.empty() ? std::wstring(L"(unknown)") : name, L"\r\n"));
  // Chosen now, while the host surely answers; the choice is kept for the process.
  static_cast<void>(GetUiLanguage());
  AnnounceOncePerProcess();
  WatchPanes();
  ArmWelcome();
}

void CConnect::WatchPanes() {
  PaneRegistry::SetTick([this](const CWebView2Pane& pane) {
    // The host may disconnect inside the tick.
    const ComPtr<IDTExtensibility2> keptAlive(this);
    Panes().PaneWidthTick(pane);
  });
}

void CConnect::ArmWelcome() {
  if (welcomeTimer_.IsRunning() || !IsWelcomeDue()) return;
  // Without a timer the welcome stays due and comes at the next connection.
  static_cast<void>(welcomeTimer_.Start(nullptr, kWelcomeDelayMs, [this] { OfferWelcome(); }));
}

void CConnect::OfferWelcome() {
  const ComPtr<IDTExtensibility2> keptAlive(this);
  if (g_connected != this) return;
  ShowFirstRunWelcome(
      [this] { return g_connected == this && Panes().ShowPanePage(L"login", std::wstring_view()); });
}

HRESULT CConnect::OnDisconnection(ext_DisconnectMode removeMode, SAFEARRAY**) noexcept {
  Guard(L"OnDisconnection", [&] {
    Panes().SaveWidthAtShutdown();
    // The host goes on, but what the panes show has nobody behind it any more.
    if (removeMode == ext_dm_UserClosed) Panes().PrunePanes();
    EndConnection();
  });
  return S_OK;
}

HRESULT CConnect::OnBeginShutdown(SAFEARRAY**) noexcept {
  Guard(L"OnBeginShutdown", [this] {
    Panes().SaveWidthAtShutdown();
    EndConnection();
  });
  return S_OK;
}

void CConnect::EndConnection() {
  welcomeTimer_.Stop();
  ribbon_.ReleaseRibbon();
  Panes().ReleaseAll();
  if (g_connected != this) return;
  g_connected = nullptr;
  PaneRegistry::SetTick({});
  // The host's Application object is let go of whatever becomes of the panes.
  Guard(L"EndConnection", [] { PaneRegistry::BeginShutdownEarly(); });
  HostSession::Get().Disconnect();
}

HRESULT CConnect::OnAddInsUpdate(SAFEARRAY**) noexcept {
  return S_OK;
}

HRESULT CConnect::OnStartupComplete(SAFEARRAY**) noexcept {
  return S_OK;
}

HRESULT CConnect::GetCustomUI(BSTR, BSTR* ribbonXml) noexcept {
  return GuardHr(L"GetCustomUI",
                 [&]() -> HRESULT { return ribbonXml != nullptr ? LoadRibbonXml(*ribbonXml) : E_POINTER; });
}

}  // namespace qv
