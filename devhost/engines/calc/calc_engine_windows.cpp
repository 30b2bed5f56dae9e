#include <stdexcept>

#include "engines/calc/calc_engine.h"
#include "engines/calc/grid_json.h"
#include "engines/calc/office_path.h"
#include "engines/calc/remote_application.h"
#include "engines/calc/remote_session.h"
#include "engines/calc/wire_values.h"
#include "foundation/text.h"

namespace qv::devhost {

namespace {

using nlohmann::json;

/// The significant part of a window handle has 32 bits.
long NumberOf(HWND window) {
  return static_cast<long>(reinterpret_cast<INT_PTR>(window));
}

json ToJson(const GridArea& area) {
  return {
      {"row", area.firstRow}, {"column", area.firstColumn}, {"rows", area.rows}, {"columns", area.columns}};
}

}  // namespace

json CalcEngine::Change(const char* operation, json options) {
  session_->NoteChange();
  json answer = session_->Engine(operation, std::move(options));
  application_->FireEvents();
  return answer;
}

std::uint64_t CalcEngine::Revision() const {
  return session_->Revision();
}

void CalcEngine::SetApplicationHandle(HWND window) {
  session_->Engine("setHandle", {{"handle", NumberOf(window)}});
}

std::vector<WindowInfo> CalcEngine::Windows() {
  std::vector<WindowInfo> windows;
  for (const json& window : session_->Engine("windows")) {
    windows.push_back({window.at("id").get<int>(), FromUtf8(window.at("caption").get<std::string>()),
                       FromUtf8(window.at("workbook").get<std::string>()), window.at("active").get<bool>()});
  }
  return windows;
}

int CalcEngine::OpenWindow(const std::wstring& path) {
  return Change("open", {{"path", calc::OfficePath(path)}}).get<int>();
}

int CalcEngine::NewWindow() {
  return Change("newWindow").get<int>();
}

void CalcEngine::ActivateWindow(int window) {
  Change("activateWindow", {{"window", window}});
}

void CalcEngine::AnnounceClose(int window) {
  const json workbook = session_->Engine("closing", {{"window", window}});
  // Nothing while the host's events are off.
  if (workbook.is_object() && application_->Events().FireBeforeClose(calc::FromWire(workbook, session_)))
    throw std::runtime_error("an add-in does not let the workbook close");
}

void CalcEngine::CloseWindow(int window) {
  Change("closeWindow", {{"window", window}});
}

ComPtr<IDispatch> CalcEngine::WindowObject(int window) {
  return calc::FromWire(session_->Engine("windowObject", {{"window", window}}), session_).Object();
}

void CalcEngine::SetWindowHandle(int window, HWND handle) {
  session_->Engine("setHandle", {{"handle", NumberOf(handle)}, {"window", window}});
}

GridSnapshot CalcEngine::Grid(int window, const GridArea& area) {
  json options = ToJson(area);
  options["window"] = window;
  return calc::GridFromJson(session_->Engine("grid", std::move(options)));
}

void CalcEngine::ActivateSheet(int window, const std::wstring& sheet) {
  Change("activateSheet", {{"window", window}, {"sheet", ToUtf8(sheet)}});
}

void CalcEngine::SelectCells(int window, const GridArea& area) {
  json options = ToJson(area);
  options["window"] = window;
  Change("selectCells", std::move(options));
}

void CalcEngine::ShowArea(int window, const GridArea& visible) {
  json options = ToJson(visible);
  options["window"] = window;
  session_->Engine("showArea", std::move(options));
}

}  // namespace qv::devhost
