#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engines/common/app_events.h"
#include "engines/memory/faults.h"
#include "engines/memory/sheet.h"

namespace qv::devhost::memory {

/// What one window remembers of one sheet.
struct SheetView {
  std::vector<Area> selection{Area{}};
  /// Where it is not the first cell of the selection.
  std::optional<Area> activeCell;
  /// Set while a chart is selected instead of cells.
  std::shared_ptr<Chart> selectedChart;
  /// The same for shapes.
  std::vector<std::shared_ptr<FloatingObject>> selectedShapes;
  long splitRow = 0;
  long splitColumn = 0;
  bool frozen = false;
  long scrollRow = 1;
  long scrollColumn = 1;
};

struct Window {
  /// Never given again.
  int id = 0;
  std::weak_ptr<Workbook> workbook;
  std::shared_ptr<Sheet> activeSheet;
  std::map<const Sheet*, SheetView> views;
  /// The model's own number, and the one that it was told to answer instead.
  long hwnd = 0;
  long givenHwnd = 0;
  bool closed = false;
  /// Room of the part that scrolls; at first what a window of usual size shows.
  long visibleRows = 36;
  long visibleColumns = 20;
  /// Replaces the computed caption when not empty.
  std::wstring ownCaption;

  /// The view of a sheet; made on first use from the sheet's frozen rows and columns.
  [[nodiscard]] SheetView& ViewOf(const Sheet& sheet);
};

struct Workbook {
  std::wstring name;
  /// Folder without a trailing separator; empty for a workbook that was never saved.
  std::wstring path;
  bool readOnly = false;
  bool saved = true;
  bool closed = false;
  /// No sheet comes, goes, moves or changes its name.
  bool isStructureProtected = false;
  std::vector<std::shared_ptr<Sheet>> sheets;
  /// In the order of their making, which numbers their captions.
  std::vector<std::shared_ptr<Window>> windows;

  [[nodiscard]] std::wstring FullName() const;
  /// 0-based; the number of sheets when it is not there.
  [[nodiscard]] size_t IndexOf(const Sheet& sheet) const;
  /// Without regard to case; null when there is none.
  [[nodiscard]] std::shared_ptr<Sheet> FindSheet(std::wstring_view sheetName) const;
};

/// The whole model behind one Application object, and the books that the object layer keeps: calls, live
/// objects, faults. Objects share it, so that one that outlives the engine still answers. Host UI thread;
/// only the violation count may be raised elsewhere.
struct Host {
  /// Excel unless `wps`.
  explicit Host(bool wps) : isWps(wps), typedRange(!wps) {}

  const bool isWps;
  const DWORD threadId = GetCurrentThreadId();

  std::vector<std::shared_ptr<Workbook>> workbooks;
  /// All windows, the active one first, as the host orders them.
  std::list<std::shared_ptr<Window>> windows;

  bool displayAlerts = true;
  bool screenUpdating = true;
  bool enableEvents = true;
  bool interactive = true;
  long calculation = -4105;
  /// What Application.CutCopyMode answers: 0, or 1 and 2 while cells are marked to be copied or moved. Only
  /// told of: nothing is pasted or inserted.
  long cutCopyMode = 0;
  /// Windows language id that LanguageSettings answers for every purpose.
  long uiLanguage = 1033;
  /// Windows offer "Workbook", which real hosts do not.
  bool windowHasWorkbook = false;
  /// PictureFormat has a "UserPicture" that exchanges the image, which real hosts do not.
  bool pictureFormatTakesImage = false;
  /// The typed Range interface is answered; WPS is not known to.
  bool typedRange;

  Faults faults;
  /// The Application object and its event source; null after the engine has gone.
  IDispatch* application = nullptr;
  AppEvents* events = nullptr;
  /// Calls by the member's process-wide number.
  std::vector<std::uint64_t> calls;
  long liveObjects = 0;
  /// Grows with every call that may change what is shown.
  std::uint64_t revision = 0;
  /// What Application.Hwnd was told to answer; 0 for the model's own number.
  long givenHwnd = 0;
  std::atomic<long> wrongThread{0};

  void CountCall(size_t member);

  [[nodiscard]] std::shared_ptr<Window> ActiveWindow() const;
  [[nodiscard]] std::shared_ptr<Workbook> ActiveWorkbook() const;
  /// "Book.xlsx", or "Book.xlsx:2" where the workbook has several windows.
  [[nodiscard]] std::wstring CaptionOf(const Window& window) const;

  /// A new workbook with one window, which becomes active.
  std::shared_ptr<Workbook> AddWorkbook(const std::wstring& name, const std::wstring& path,
                                        std::vector<std::shared_ptr<Sheet>> sheets);
  /// One more window, active, on the workbook's first visible sheet or the active window's one.
  std::shared_ptr<Window> AddWindow(const std::shared_ptr<Workbook>& workbook);
  std::shared_ptr<Sheet> AddSheet(const std::shared_ptr<Workbook>& workbook, std::wstring name,
                                  size_t position);
  void CloseWorkbook(const std::shared_ptr<Workbook>& workbook);
  /// Closes the workbook with its last window.
  void CloseWindow(const std::shared_ptr<Window>& window);
  /// Takes the sheet out of the workbook and of its windows. The caller makes sure that a visible one is
  /// left.
  void DeleteSheet(const std::shared_ptr<Sheet>& sheet);

  /// The host's answer to protection: throws the general refusal where the sheet is protected and a cell of
  /// the areas is locked.
  static void RequireWritable(const Sheet& sheet, const std::vector<Area>& areas);
  /// Formats, heights and widths of a protected sheet are refused for every cell.
  static void RequireFormattable(const Sheet& sheet);
  static void RequireOpenStructure(const Workbook& workbook);

 private:
  int lastWindowId_ = 0;
  long lastWindowHandle_ = 0x10000;
};

/// Throws the host's general refusal.
[[noreturn]] void Refuse();

}  // namespace qv::devhost::memory
