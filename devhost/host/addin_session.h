#pragma once

#include <memory>

#include "addin/office_interfaces.h"
#include "foundation/variant.h"
#include "host/addin_instance.h"
#include "host/call_log.h"
#include "host/ribbon.h"

namespace qv::devhost {

/// One connection of the add-in, in the order that Office keeps: created by ProgID, connected, given the
/// task-pane factory, asked for its ribbon and given the ribbon object, told that the start is complete; and
/// all the way back. UI thread.
class AddinSession {
 public:
  /// How the optional arguments of the life-cycle calls look; hosts differ.
  struct Manner {
    ext_ConnectMode mode = ext_cm_Startup;
    bool withInstance = true;
    /// A null `custom` instead of a pointer to an empty array.
    bool nullCustom = false;
  };

  /// The factory may be null: then none is offered. The log is borrowed. Throws std::runtime_error with the
  /// call that failed.
  AddinSession(IDispatch* application, ICTPFactory* factory, Manner manner, CallLog& log);
  AddinSession(const AddinSession&) = delete;
  AddinSession& operator=(const AddinSession&) = delete;
  ~AddinSession();

  [[nodiscard]] IDTExtensibility2* Addin() const { return addin_.Get(); }
  /// The ribbon's XML, or empty when the add-in has none.
  [[nodiscard]] const std::wstring& RibbonXml() const { return ribbonXml_; }
  /// The add-in's ribbon; null when it has none or after `Disconnect`.
  [[nodiscard]] Ribbon* TheRibbon() const { return ribbon_.get(); }

  /// OnBeginShutdown, once: the host is about to close its windows.
  void BeginShutdown();
  /// OnBeginShutdown (only when the host itself ends, and it was not told yet), OnDisconnection, release.
  /// References to the add-in that are left, 0 when none. Repeated calls do nothing.
  ULONG Disconnect(ext_DisconnectMode mode = ext_dm_HostShutdown);

 private:
  void OfferFactory(ICTPFactory* factory);
  void AskForRibbon();
  /// Runs one life-cycle call with the custom argument of this session's manner.
  template <typename Call>
  HRESULT WithCustom(Call&& call);

  Manner manner_;
  CallLog& log_;
  ComPtr<IDTExtensibility2> addin_;
  ComPtr<AddinInstance> instance_;
  std::wstring ribbonXml_;
  std::unique_ptr<Ribbon> ribbon_;
  bool isShuttingDown_ = false;
};

}  // namespace qv::devhost
