#include "engines/calc/calc_engine.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

#include "engines/calc/office_path.h"
#include "engines/calc/remote_application.h"
#include "engines/calc/remote_session.h"
#include "engines/calc/wire_values.h"
#include "engines/common/member_fault_json.h"
#include "foundation/text.h"

namespace qv::devhost {

using nlohmann::json;

namespace {

/// What can be asked to go wrong; the other members of a description go with one of these.
constexpr std::string_view kFaults[] = {"clear", "fail", "busy", "slow"};

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

json CalcEngine::Cell(const std::wstring& sheet, const std::string& address) {
  return session_->Engine("cell", {{"sheet", ToUtf8(sheet)}, {"address", address}});
}

void CalcEngine::Select(const std::wstring& sheet, const std::string& address) {
  Change("select", {{"sheet", ToUtf8(sheet)}, {"address", address}});
}

void CalcEngine::ChangeCells(const char* operation, json options) {
  const json changed = Change(operation, std::move(options));
  // Nothing while the host's events are off.
  if (!changed.is_object()) return;
  const std::array args{calc::FromWire(changed.at("sheet"), session_),
                        calc::FromWire(changed.at("range"), session_)};
  application_->Events().Fire(AppEvent::kSheetChange, args);
}

void CalcEngine::Type(const std::wstring& sheet, std::string_view address, const std::wstring& text) {
  ChangeCells("type", {{"sheet", ToUtf8(sheet)}, {"address", address}, {"text", ToUtf8(text)}});
}

void CalcEngine::InsertRows(const std::wstring& sheet, int row, int count) {
  ChangeCells("insertRows", {{"sheet", ToUtf8(sheet)}, {"row", row}, {"count", count}});
}

void CalcEngine::RenameSheet(const std::wstring& sheet, const std::wstring& name) {
  Change("renameSheet", {{"sheet", ToUtf8(sheet)}, {"name", ToUtf8(name)}});
}

void CalcEngine::DeleteSheet(const std::wstring& sheet) {
  Change("deleteSheet", {{"sheet", ToUtf8(sheet)}});
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

void CalcEngine::Fault(const json& fault) {
  for (const auto& [member, value] : fault.items()) {
    if (std::ranges::count(kFaults, member) == 0 && !IsDetailOfFault(member))
      ThrowBadFault("the calc engine has no " + member);
  }
  if (std::ranges::none_of(kFaults, [&](std::string_view name) { return fault.contains(name); }))
    ThrowBadFault("nothing to do");
  // Read as a whole before anything is done.
  std::vector<MemberFault> failures;
  if (fault.contains("fail")) failures.push_back(FailureFromJson(fault));
  if (fault.contains("busy")) failures.push_back(BusyFromJson(fault));
  if (fault.contains("slow")) failures.push_back(DelayFromJson(fault));
  if (fault.contains("clear")) session_->Faults().Clear();
  for (MemberFault& failure : failures)
    session_->Faults().Fail(std::move(failure));
}

}  // namespace qv::devhost
