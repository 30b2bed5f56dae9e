#include "engines/calc/remote_session.h"

#include <stdexcept>

#include "foundation/text.h"

namespace qv::devhost::calc {

using nlohmann::json;

namespace {

CallAnswer Disconnected() {
  return {{RPC_E_DISCONNECTED, 0, L"The office is gone."}, nullptr};
}

CallFailure FailureOf(const json& reply) {
  CallFailure failure;
  failure.code = static_cast<HRESULT>(reply.value("hr", static_cast<unsigned long>(E_FAIL)));
  failure.scode = static_cast<SCODE>(reply.value("scode", 0UL));
  failure.text = FromUtf8(reply.value("text", std::string()));
  return failure;
}

}  // namespace

RemoteSession::RemoteSession(unsigned short port, HostStyle style, HWND frame) : connection_(port) {
  json hello{{"op", "hello"}, {"style", style == HostStyle::kWps ? "wps" : "excel"}};
  if (frame != nullptr) hello["window"] = static_cast<long>(reinterpret_cast<INT_PTR>(frame));
  const CallAnswer answer = Call(std::move(hello));
  if (answer.failure.code != S_OK) throw std::runtime_error("the office does not talk as expected");
  for (const auto& [type, names] : answer.value.items())
    members_[type] = names.get<std::set<std::string>>();
}

bool RemoteSession::HasMember(const std::string& type, const std::string& name) const {
  const auto found = members_.find(type);
  return found != members_.end() && found->second.contains(LowerAscii(name));
}

CallAnswer RemoteSession::Call(json request) {
  {
    const std::lock_guard guard(lock_);
    if (!released_.empty()) request["release"] = std::exchange(released_, {});
  }
  const auto line = connection_.Exchange(request.dump(-1, ' ', false, json::error_handler_t::replace));
  if (!line) return Disconnected();
  json reply = json::parse(*line, nullptr, false);
  if (!reply.is_object()) return Disconnected();
  if (const auto events = reply.find("events"); events != reply.end()) {
    for (const auto& event : *events)
      events_.push_back(event.get<std::string>());
  }
  if (reply.contains("changed")) NoteChange();
  if (reply.contains("hr")) return {FailureOf(reply), nullptr};
  return {{}, std::move(reply["r"])};
}

json RemoteSession::Engine(const char* operation, json options) {
  CallAnswer answer = Call({{"op", "engine"}, {"do", operation}, {"with", std::move(options)}});
  if (answer.failure.code != S_OK) throw std::runtime_error(ToUtf8(answer.failure.text));
  return std::move(answer.value);
}

void RemoteSession::CountObject() {
  const std::lock_guard guard(lock_);
  ++live_;
}

void RemoteSession::Forget(int handle) {
  const std::lock_guard guard(lock_);
  released_.push_back(handle);
  --live_;
}

long RemoteSession::LiveObjects() const {
  const std::lock_guard guard(lock_);
  return live_;
}

}  // namespace qv::devhost::calc
