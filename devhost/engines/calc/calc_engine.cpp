#include "engines/calc/calc_engine.h"

#include <stdexcept>

#include "engines/calc/office_path.h"
#include "engines/calc/remote_application.h"
#include "engines/calc/remote_session.h"
#include "foundation/text.h"

namespace qv::devhost {

using nlohmann::json;

CalcEngine::CalcEngine(unsigned short port, HostStyle style, HWND frame)
    : session_(std::make_shared<calc::RemoteSession>(port, style, frame)) {
  const EventStyle events = style == HostStyle::kExcel ? EventStyle::kNamed : EventStyle::kPositional;
  // MinGW's ComPtr::Attach adds a reference, so the first one is handed over this way.
  *application_.GetAddressOf() = new calc::RemoteApplication(session_, events);
  session_->SetAfterCall([this] { application_->FireEvents(); });
}

CalcEngine::~CalcEngine() {
  session_->SetAfterCall(nullptr);
  application_->Events().DisconnectAll();
  try {
    session_->Engine("close");
  } catch (const std::exception&) {
    // An office that is gone has no workbook open.
  }
}

IDispatch* CalcEngine::Application() {
  return application_.Get();
}

json CalcEngine::Cell(const std::wstring& sheet, const std::string& address) {
  return session_->Engine("cell", {{"sheet", ToUtf8(sheet)}, {"address", address}});
}

void CalcEngine::Select(const std::wstring& sheet, const std::string& address) {
  Change("select", {{"sheet", ToUtf8(sheet)}, {"address", address}});
}

void CalcEngine::Protect(const std::wstring& sheet, bool on) {
  Change("protect", {{"sheet", ToUtf8(sheet)}, {"on", on}});
}

void CalcEngine::Save(const std::wstring& path) {
  session_->Engine("save", {{"path", calc::OfficePath(path)}});
}

void CalcEngine::Shot(const std::wstring& path) {
  session_->Engine("shot", {{"path", calc::OfficePath(path)}});
}

json CalcEngine::Counters() {
  return {
      {"calls", session_->Calls()}, {"live", session_->LiveObjects()}, {"busy", session_->Busy().ToJson()}};
}

void CalcEngine::ResetCounters() {
  session_->ResetCalls();
}

void CalcEngine::Fault(const json&) {
  throw std::runtime_error("the calc engine injects no faults");
}

}  // namespace qv::devhost
