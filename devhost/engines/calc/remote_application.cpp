#include "engines/calc/remote_application.h"

#include <array>

#include "engines/calc/wire_values.h"

namespace qv::devhost::calc {

namespace {

constexpr int kHandle = 1;

}  // namespace

RemoteApplication::RemoteApplication(std::shared_ptr<RemoteSession> session, EventStyle style)
    : RemoteObject(std::move(session), kHandle, "Application"), events_(*this, style) {}

HRESULT RemoteApplication::QueryInterface(REFIID iid, void** object) {
  const HRESULT own = RemoteObject::QueryInterface(iid, object);
  if (own != E_NOINTERFACE) return own;
  *object = events_.Query(iid);
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

void RemoteApplication::FireEvents() {
  const std::vector<std::string> happened = SharedSession()->TakeEvents();
  if (happened.empty() || events_.SinkCount() == 0) return;
  const CallAnswer answer = SharedSession()->Call({{"op", "engine"}, {"do", "selection"}});
  if (answer.failure.code != S_OK) return;
  const auto active = [&](const char* name) { return FromWire(answer.value.at(name), SharedSession()); };
  const std::array<Variant, 2> bookAndWindow{active("workbook"), active("window")};
  const std::array<Variant, 2> sheetAndRange{active("sheet"), active("range")};
  for (const std::string& event : happened) {
    if (event == "window") {
      events_.Fire(AppEvent::kWindowActivate, bookAndWindow);
    } else if (event == "sheet") {
      events_.Fire(AppEvent::kSheetActivate, std::span(sheetAndRange).first(1));
    } else if (event == "selection") {
      events_.Fire(AppEvent::kSheetSelectionChange, sheetAndRange);
    }
  }
}

}  // namespace qv::devhost::calc
