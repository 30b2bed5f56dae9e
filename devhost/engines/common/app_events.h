#pragma once

#include <oaidl.h>
#include <ocidl.h>

#include <map>
#include <span>

#include "foundation/variant.h"

namespace qv::devhost {

/// Dispinterface of the Application's events.
inline constexpr IID kAppEventsIid = {0x00024413, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// Dispatch ids of the events, as Excel publishes them; the comment gives the parameters in declared order.
enum class AppEvent : DISPID {
  kWindowActivate = 1556,        // workbook, window
  kWindowDeactivate = 1557,      // workbook, window
  kSheetSelectionChange = 1558,  // sheet, range
  kSheetActivate = 1561,         // sheet
  kSheetDeactivate = 1562,       // sheet
  kSheetCalculate = 1563,        // sheet
  kSheetChange = 1564,           // sheet, range
  kWorkbookOpen = 1567,          // workbook
  kWorkbookActivate = 1568,      // workbook
  kWorkbookDeactivate = 1569,    // workbook
  kWorkbookBeforeClose = 1570,   // workbook, VARIANT_BOOL* cancel
  kWorkbookNewSheet = 1573,      // workbook, sheet
};

/// How the host hands event arguments over, or that it has no events.
enum class EventStyle {
  /// Excel: every argument is named by its parameter number, so rgvarg[0] is the first parameter.
  kNamed,
  /// WPS: positional, so rgvarg[0] is the last parameter.
  kPositional,
  /// FindConnectionPoint answers CONNECT_E_NOCONNECTION.
  kRefuseFind,
  /// The connection point is there, Advise answers CONNECT_E_CANNOTCONNECT.
  kRefuseAdvise,
};

/// The event source of an object, normally the Application: its IConnectionPointContainer and the one
/// connection point. Both are parts of the object and count their references on it. Host UI thread only.
class AppEvents {
 public:
  /// `owner` is borrowed and contains this object; `events` is the dispinterface that sinks answer.
  AppEvents(IUnknown& owner, EventStyle style, REFIID events = kAppEventsIid);
  AppEvents(const AppEvents&) = delete;
  AppEvents& operator=(const AppEvents&) = delete;
  ~AppEvents() = default;

  void SetStyle(EventStyle style) { style_ = style; }

  /// For the owner's QueryInterface: the IConnectionPointContainer without a new reference, or null for
  /// any other interface.
  [[nodiscard]] void* Query(REFIID iid);

  /// Calls every sink that is connected when it is its turn; `args` stand in declared order. A sink may
  /// connect and disconnect sinks during the call; one that is added gets only later events. Failures of a
  /// sink are its own affair.
  void Fire(AppEvent event, std::span<const Variant> args) { Fire(static_cast<DISPID>(event), args); }
  void Fire(DISPID event, std::span<const Variant> args);

  /// WorkbookBeforeClose; true when a sink has cancelled the closing.
  [[nodiscard]] bool FireBeforeClose(Variant workbook);

  /// Sinks connected now; a test asks for zero after the add-in has gone.
  [[nodiscard]] size_t SinkCount() const { return sinks_.size(); }
  /// Drops every sink, as a host does when it ends.
  void DisconnectAll() { sinks_.clear(); }

 private:
  class Container final : public IConnectionPointContainer {
   public:
    explicit Container(AppEvents& events) : events_(events) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

   private:
    AppEvents& events_;
  };

  class Point final : public IConnectionPoint {
   public:
    explicit Point(AppEvents& events) : events_(events) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

   private:
    AppEvents& events_;
  };

  void CallSink(IDispatch& sink, DISPID event, std::span<const Variant> args) const;

  IUnknown& owner_;
  EventStyle style_;
  IID iid_;
  Container container_{*this};
  Point point_{*this};
  std::map<DWORD, ComPtr<IDispatch>> sinks_;
  DWORD lastCookie_ = 0;
};

}  // namespace qv::devhost
