#pragma once

#include <oaidl.h>

#include "addin/ctp_consumer_base.h"
#include "addin/office_interfaces.h"
#include "addin/ribbon_callbacks.h"
#include "addin/task_panes.h"
#include "foundation/com_object.h"
#include "foundation/ui_timer.h"
#include "foundation/variant.h"
#include "panel/type_library.h"

/// Dispatch interface of the ribbon callbacks, as the type library describes it.
struct IRibbonCallback : public IDispatch {};
__CRT_UUID_DECL(IRibbonCallback, 0xC3D4E5F6, 0xA7B8, 0x4901, 0x8C, 0xDE, 0xF2, 0x34, 0x56, 0x78, 0x90, 0x12)

namespace qv {

/// Class "ExcelAddin.Connect".
inline constexpr CLSID kConnectClassId = {
    0xA1B2C3D4, 0xE5F6, 0x7890, {0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67, 0x89}};

template <>
struct ComBaseOf<IRibbonCallback> {
  using Type = IDispatch;
};

/// The add-in's connection with its host. Tolerates every order of the host's calls: a host may ask for
/// nothing but the class, connect late, and connect and disconnect again and again. One implementation of
/// IDispatch stands behind all its interfaces, because hosts send the ribbon's callbacks to the IDispatch of
/// whichever they hold. Host UI thread.
class CConnect final
    : public ComObject<IDTExtensibility2, IRibbonExtensibility, CTPConsumerBase, IRibbonCallback> {
 public:
  // IDispatch
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) noexcept override;

  // IDTExtensibility2
  HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* application, ext_ConnectMode connectMode,
                                         IDispatch* addInInst, SAFEARRAY** custom) noexcept override;
  HRESULT STDMETHODCALLTYPE OnDisconnection(ext_DisconnectMode removeMode,
                                            SAFEARRAY** custom) noexcept override;
  HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) noexcept override;
  HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) noexcept override;
  HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) noexcept override;

  // IRibbonExtensibility
  HRESULT STDMETHODCALLTYPE GetCustomUI(BSTR ribbonId, BSTR* ribbonXml) noexcept override;

 private:
  ~CConnect() override;

  /// Ids of a callback's name and of its arguments' names; DISPID_UNKNOWN stands for those not found.
  [[nodiscard]] HRESULT FindNames(LPOLESTR* names, UINT count, DISPID* ids);
  void Connect(IDispatch* application);
  void EndConnection();
  /// Watches the widths of this connection's panes.
  void WatchPanes();
  /// Offers the first-run welcome a little later, when the host has come to rest.
  void ArmWelcome();
  void OfferWelcome();

  InterfaceTypeInfo typeInfo_{__uuidof(IRibbonCallback)};
  RibbonCallbacks ribbon_{Panes()};
  UiTimer welcomeTimer_;
};

}  // namespace qv
