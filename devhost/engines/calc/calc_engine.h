#pragma once

#include <memory>
#include <string>

#include "engines/engine.h"
#include "foundation/variant.h"

namespace qv::devhost {

namespace calc {
class RemoteApplication;
class RemoteSession;
}  // namespace calc

/// A real workbook in LibreOffice Calc behind the object model of Excel or WPS. Events are named in Excel's
/// style and positional in WPS's. The office itself belongs to whoever started it.
class CalcEngine final : public Engine {
 public:
  /// `port` of 127.0.0.1 is where `office/start_office.py` serves; `frame` is what Application.Hwnd answers,
  /// null keeps a made-up number that is no window. Throws std::runtime_error when no office answers.
  CalcEngine(unsigned short port, HostStyle style, HWND frame = nullptr);
  CalcEngine(const CalcEngine&) = delete;
  CalcEngine& operator=(const CalcEngine&) = delete;
  /// Closes the workbooks and drops the event sinks; objects that are still held answer that they are closed.
  ~CalcEngine() override;

  IDispatch* Application() override;
  void SetApplicationHandle(HWND window) override;

  [[nodiscard]] std::vector<WindowInfo> Windows() override;
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
  [[nodiscard]] std::uint64_t Revision() const override;

  nlohmann::json Cell(const std::wstring& sheet, const std::string& address) override;
  void Select(const std::wstring& sheet, const std::string& address) override;
  void Type(const std::wstring& sheet, std::string_view address, const std::wstring& text) override;
  void InsertRows(const std::wstring& sheet, int row, int count) override;
  void RenameSheet(const std::wstring& sheet, const std::wstring& name) override;
  void DeleteSheet(const std::wstring& sheet) override;
  void Protect(const std::wstring& sheet, bool on) override;
  void Save(const std::wstring& path) override;
  void Shot(const std::wstring& path) override;
  nlohmann::json Counters() override;
  void ResetCounters() override;
  /// See engines/common/member_fault_json.h; the classes are named as the office names them ("Sheets", not
  /// "Worksheets").
  void Fault(const nlohmann::json& fault) override;

 private:
  /// An operation that changes what is shown, with the events that come of it.
  nlohmann::json Change(const char* operation, nlohmann::json options = nlohmann::json::object());
  /// The same for an operation that answers with the sheet and the cells that it has changed.
  void ChangeCells(const char* operation, nlohmann::json options);

  std::shared_ptr<calc::RemoteSession> session_;
  ComPtr<calc::RemoteApplication> application_;
};

}  // namespace qv::devhost
