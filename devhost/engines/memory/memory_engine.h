#pragma once

#include <oaidl.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/app_events.h"
#include "engines/engine.h"
#include "engines/memory/faults.h"
#include "engines/memory/host.h"
#include "engines/memory/sheet.h"
#include "foundation/variant.h"

namespace qv::devhost {

namespace memory {
class ApplicationObject;
}

/// A small spreadsheet in memory behind a late-bound object model, with faults on request. It stands for
/// Excel, or for WPS Spreadsheets: then "Name" is "WPS Spreadsheets", "Version" "12.0", events come
/// positionally, error cells read as integers, the typed Range is refused, and the Application has one frame
/// window handle of its own.
///
/// What it does not do: calculate formulas (see memory::ParseEntry), wrap lines by width, grow rows by
/// itself, keep formats of whole rows and columns beyond the used area. Each property read makes a new
/// object, so two pointers to the same sheet differ, as in WPS.
///
/// All on the thread that made the engine. Objects may outlive it; they then go on working on their own.
class MemoryEngine final : public Engine {
 public:
  explicit MemoryEngine(HostStyle style = HostStyle::kExcel);
  MemoryEngine(const MemoryEngine&) = delete;
  MemoryEngine& operator=(const MemoryEngine&) = delete;
  ~MemoryEngine() override;

  [[nodiscard]] IDispatch* Application() override;
  void SetApplicationHandle(HWND window) override;

  [[nodiscard]] std::vector<WindowInfo> Windows() override;
  /// A JSON file as described in memory/workbook_json.h; the workbook gets the file's name and folder.
  int OpenWindow(const std::wstring& path) override;
  int NewWindow() override;
  void ActivateWindow(int window) override;
  void AnnounceClose(int window) override;
  void CloseWindow(int window) override;
  [[nodiscard]] ComPtr<IDispatch> WindowObject(int window) override;
  void SetWindowHandle(int window, HWND handle) override;
  [[nodiscard]] GridSnapshot Grid(int window, const GridArea& area) override;
  void ActivateSheet(int window, const std::wstring& sheet) override;
  void SelectCells(int window, const GridArea& area) override;
  void ShowArea(int window, const GridArea& visible) override;
  [[nodiscard]] std::uint64_t Revision() const override { return host_->revision; }

  [[nodiscard]] nlohmann::json Cell(const std::wstring& sheet, const std::string& address) override;
  void Select(const std::wstring& sheet, const std::string& address) override;
  void Type(const std::wstring& sheet, std::string_view address, const std::wstring& text) override;
  /// Formulas keep their texts, and the new rows have no formats.
  void InsertRows(const std::wstring& sheet, int row, int count) override;
  void RenameSheet(const std::wstring& sheet, const std::wstring& name) override;
  void DeleteSheet(const std::wstring& sheet) override;
  void Protect(const std::wstring& sheet, bool on) override;
  /// The active workbook in the form that Open reads.
  void Save(const std::wstring& path) override;
  /// There is no picture here: throws.
  void Shot(const std::wstring& path) override;
  /// Besides "calls" and "live": "wrongThread", calls and releases from a foreign thread, and "sinks", event
  /// sinks that are connected.
  [[nodiscard]] nlohmann::json Counters() override;
  void ResetCounters() override;

  /// What engines/common/member_fault_json.h describes, and one or more of:
  /// {"clear":true} all failing members, hidden members, item forms, bulk failures, array answers and
  /// callbacks go;
  /// {"missing":"Window.Hwnd"} or a list: the name is unknown;
  /// {"item":"every"|"property"|"method"|"default","class":"*"}: the only form in which collections give
  /// items;
  /// {"bulkValue2":n|true|false} and {"bulkPut":…}: reads or writes of several cells at once fail;
  /// {"arrayAnswers":bool}, {"typedRange":bool}, {"windowWorkbook":bool};
  /// {"events":"named"|"positional"|"refused"|"refuseAdvise"}.
  void Fault(const nlohmann::json& fault) override;

  // For tests in the same process. An empty sheet name is the active sheet; an unknown one throws.

  [[nodiscard]] memory::Host& Host() { return *host_; }
  [[nodiscard]] memory::Faults& Faults() { return host_->faults; }

  /// A new workbook with empty sheets in a folder ("" for one that was never saved); its window becomes
  /// active.
  std::shared_ptr<memory::Workbook> AddWorkbook(const std::wstring& name,
                                                const std::wstring& folder = L"C:\\Books",
                                                const std::vector<std::wstring>& sheets = {L"Sheet1"});
  /// A further window on the workbook, active.
  std::shared_ptr<memory::Window> AddWindow(const std::shared_ptr<memory::Workbook>& workbook);
  void CloseWindow(const std::shared_ptr<memory::Window>& window);
  void CloseWorkbook(const std::shared_ptr<memory::Workbook>& workbook);
  /// As a click of the user: events are fired.
  void ActivateWindow(const std::shared_ptr<memory::Window>& window);
  void ActivateSheet(const std::wstring& sheet);
  void SelectChart(const std::wstring& sheet, size_t index);
  /// Shapes that may lie in groups.
  void SelectShapes(const std::wstring& sheet, std::vector<std::shared_ptr<memory::FloatingObject>> shapes);

  /// Sheet of the active workbook. What is changed through it does not raise `Revision`.
  [[nodiscard]] memory::Sheet& Sheet(std::wstring_view name = {});
  /// Puts a value into the model; no protection, no events, texts stand as they are.
  void Set(const std::wstring& sheet, std::string_view address, memory::CellValue value);
  void SetFormula(const std::wstring& sheet, std::string_view address, std::wstring formula,
                  memory::CellValue result);
  void Merge(const std::wstring& sheet, std::string_view address);
  std::shared_ptr<memory::Chart> AddChart(const std::wstring& sheet, const std::wstring& title);

  /// A picture on top of all others, one pixel 0.75 points.
  std::shared_ptr<memory::Shape> AddPicture(const std::wstring& sheet, const std::wstring& name,
                                            std::shared_ptr<const memory::PictureData> picture);
  /// A shape of another type; a group takes its place from what is put into it.
  std::shared_ptr<memory::Shape> AddShape(const std::wstring& sheet, const std::wstring& name, long type);
  /// Moves shapes of the sheet into a group.
  static void PutIntoGroup(memory::Sheet& sheet, memory::Shape& group,
                           const std::vector<std::shared_ptr<memory::Shape>>& shapes);

  // Objects as an add-in would get them; they count as live while they are held.
  [[nodiscard]] ComPtr<IDispatch> WindowObject(const std::shared_ptr<memory::Window>& window);
  [[nodiscard]] ComPtr<IDispatch> SheetObject(const std::wstring& sheet = {});
  [[nodiscard]] ComPtr<IDispatch> RangeObject(const std::wstring& sheet, std::string_view address);

  void SetEventStyle(EventStyle style);
  /// Fires an event without anything having changed; the arguments in declared order.
  void Fire(AppEvent event, std::span<const Variant> args);

  /// Calls of "Class.Member" since the start or the last ResetCounters.
  [[nodiscard]] std::uint64_t Calls(const std::string& member) const;
  /// All calls.
  [[nodiscard]] std::uint64_t Calls() const;
  /// Objects handed out and still referenced, the Application not counted.
  [[nodiscard]] long LiveObjects() const { return host_->liveObjects; }
  [[nodiscard]] long WrongThreadCalls() const { return host_->wrongThread; }

 private:
  [[nodiscard]] std::shared_ptr<memory::Sheet> FindSheet(std::wstring_view name) const;
  [[nodiscard]] std::shared_ptr<memory::Window> FindWindow(int id) const;
  /// Notes that what is shown may have changed.
  void Changed() { ++host_->revision; }

  std::shared_ptr<memory::Host> host_;
  memory::ApplicationObject* application_;
  ComPtr<IDispatch> applicationReference_;
  /// By workbook; a closed one stays among them, so that its file is not written over either.
  std::vector<std::pair<std::wstring, std::weak_ptr<memory::Workbook>>> openedFiles_;
};

}  // namespace qv::devhost
