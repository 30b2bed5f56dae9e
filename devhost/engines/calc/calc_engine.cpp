#include "engines/calc/calc_engine.h"

#include <stdexcept>

#include "engines/calc/remote_application.h"
#include "engines/calc/remote_session.h"
#include "foundation/text.h"

namespace qv::devhost {

namespace {

using nlohmann::json;

/// A path of the Wine prefix as the office, a program of the system below, knows it. Other paths stay as they
/// are.
std::string OfficePath(const std::wstring& path) {
  using Translate = char*(CDECL*)(const WCHAR*);
  const bool hasDrive = path.size() > 2 && path[1] == L':';
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  // Only Wine has it; on Windows there is nothing to translate.
  const auto translate =
      reinterpret_cast<Translate>(reinterpret_cast<void*>(GetProcAddress(kernel, "wine_get_unix_file_name")));
  if (!hasDrive || translate == nullptr) return ToUtf8(path);
  char* const native = translate(path.c_str());
  if (native == nullptr) return ToUtf8(path);
  std::string result(native);
  HeapFree(GetProcessHeap(), 0, native);
  return result;
}

}  // namespace

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

void CalcEngine::Open(const std::wstring& path) {
  session_->Engine("open", {{"path", OfficePath(path)}});
}

json CalcEngine::Cell(const std::wstring& sheet, const std::string& address) {
  return session_->Engine("cell", {{"sheet", ToUtf8(sheet)}, {"address", address}});
}

void CalcEngine::Select(const std::wstring& sheet, const std::string& address) {
  session_->Engine("select", {{"sheet", ToUtf8(sheet)}, {"address", address}});
  application_->FireEvents();
}

void CalcEngine::Protect(const std::wstring& sheet, bool on) {
  session_->Engine("protect", {{"sheet", ToUtf8(sheet)}, {"on", on}});
}

void CalcEngine::Save(const std::wstring& path) {
  session_->Engine("save", {{"path", OfficePath(path)}});
}

void CalcEngine::Shot(const std::wstring& path) {
  session_->Engine("shot", {{"path", OfficePath(path)}});
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
