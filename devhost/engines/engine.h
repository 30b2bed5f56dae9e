#pragma once

#include <oaidl.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "engines/grid_snapshot.h"
#include "foundation/variant.h"

namespace qv::devhost {

enum class HostStyle { kExcel, kWps };

/// A spreadsheet behind a late-bound object model, and the few things that a test or a script wants from it
/// without going through that model. All calls on the host's UI thread. Failures throw std::runtime_error
/// with a text for people; the host answers it as {"ok":false,"error":…} and nothing has changed.
class Engine {
 public:
  virtual ~Engine() = default;

  /// The Application object that is handed to add-ins; borrowed, lives as long as the engine.
  [[nodiscard]] virtual IDispatch* Application() = 0;

  /// What Application.Hwnd answers from now on; null gives the engine's own number again.
  virtual void SetApplicationHandle(HWND window) = 0;

  /// All document windows in the order in which they were opened.
  [[nodiscard]] virtual std::vector<WindowInfo> Windows() = 0;
  /// Opens a workbook, makes its window the active one and gives its id; a file that is open already keeps
  /// its window, which becomes active. The memory engine takes a JSON description of sheets.
  virtual int OpenWindow(const std::wstring& path) = 0;
  void Open(const std::wstring& path) { static_cast<void>(OpenWindow(path)); }
  /// A further window on the active workbook, active; gives its id.
  virtual int NewWindow() = 0;

  // An id of no open window throws.

  /// As a click of the user into the window: events are fired when another one was active.
  virtual void ActivateWindow(int window) = 0;
  /// Tells that the window's workbook is about to close (WorkbookBeforeClose); throws when an add-in does not
  /// let it.
  virtual void AnnounceClose(int window) = 0;
  /// The workbook goes with its last window, without being saved.
  virtual void CloseWindow(int window) = 0;
  /// The Window object as an add-in would get it; it counts as live while it is held.
  [[nodiscard]] virtual ComPtr<IDispatch> WindowObject(int window) = 0;
  /// What Window.Hwnd answers from now on; null gives the engine's own number again.
  virtual void SetWindowHandle(int window, HWND handle) = 0;

  /// What the window shows of its active sheet, within an area that is cut where the sheet ends. One round
  /// trip.
  [[nodiscard]] virtual GridSnapshot Grid(int window, const GridArea& area) = 0;
  /// As clicks of the user into the window, which becomes active: events are fired.
  virtual void ActivateSheet(int window, const std::wstring& sheet) = 0;
  virtual void SelectCells(int window, const GridArea& area) = 0;
  /// Scrolls: the area's first cell is the first one of the part that scrolls, its size is what the window
  /// has room for; VisibleRange answers it. Nothing new is shown by itself, so `Revision` stays.
  virtual void ShowArea(int window, const GridArea& visible) = 0;
  /// Grows with every call that may have changed what is shown. Costs nothing.
  [[nodiscard]] virtual std::uint64_t Revision() const = 0;

  /// {"value":…,"formula":"…","text":"…","wrap":bool,"rowHeight":pt,"runs":[{"start":1,"length":n,"text":"…",
  /// "font":"…","size":pt,"bold":bool,"color":n}]}; runs are 1-based and cover the text, color is the host's
  /// blue-green-red number. `address` is one cell in A1 form; an empty sheet name means the active sheet.
  [[nodiscard]] virtual nlohmann::json Cell(const std::wstring& sheet, const std::string& address) = 0;

  // As the user does it in the active workbook, with the events that go with it. An empty sheet name means
  // the active sheet.

  /// Activates the sheet and selects the range (A1 form, areas separated by commas).
  virtual void Select(const std::wstring& sheet, const std::string& address) = 0;
  /// Types a text into one cell; the host reads it as it reads every entry ("=A1", "12", "'12"). A locked
  /// cell of a protected sheet refuses.
  virtual void Type(const std::wstring& sheet, std::string_view address, const std::wstring& text) = 0;
  /// Inserts empty rows above the 1-based row; what is there moves down.
  virtual void InsertRows(const std::wstring& sheet, int row, int count) = 0;
  virtual void RenameSheet(const std::wstring& sheet, const std::wstring& name) = 0;
  /// The last visible sheet stays.
  virtual void DeleteSheet(const std::wstring& sheet) = 0;
  virtual void Protect(const std::wstring& sheet, bool on) = 0;
  /// Saves a copy; never over the opened file.
  virtual void Save(const std::wstring& path) = 0;
  /// PNG picture of the active sheet.
  virtual void Shot(const std::wstring& path) = 0;

  /// {"calls":{"Range.Value2":n,…},"live":n}: calls through the object model by "Class.Member" since the
  /// start or the last `ResetCounters`, and objects handed out that are still referenced (the Application not
  /// counted).
  [[nodiscard]] virtual nlohmann::json Counters() = 0;
  virtual void ResetCounters() = 0;

  /// Injects or clears faults. Both engines take {"clear":true} and the members that
  /// engines/common/member_fault_json.h describes, the memory engine more.
  virtual void Fault(const nlohmann::json& fault) = 0;
};

}  // namespace qv::devhost
