#include "webview2/chromium/devtools_client.h"

#include <utility>

namespace qv::devhost {

void DevToolsClient::Waiting::Answer(HRESULT result, Json value) {
  queue.Post([reply = std::move(reply), result, value = std::move(value)] { reply(result, value); });
}

void DevToolsClient::Call(const std::string& session, const char* method, Json parameters,
                          const CompletionQueue::Entrance& queue, Reply reply) {
  Waiting waiting{queue, std::move(reply)};
  std::int64_t id = 0;
  {
    const std::scoped_lock lock(mutex_);
    if (lost_) return waiting.Answer(kBrowserLost, nullptr);
    id = ++lastId_;
    waiting_.emplace(id, std::move(waiting));
  }
  Send(id, session, method, std::move(parameters));
}

void DevToolsClient::Tell(const std::string& session, const char* method, Json parameters) {
  std::int64_t id = 0;
  {
    const std::scoped_lock lock(mutex_);
    id = ++lastId_;
  }
  Send(id, session, method, std::move(parameters));
}

void DevToolsClient::Send(std::int64_t id, const std::string& session, const char* method, Json parameters) {
  Json message{{"id", id}, {"method", method}};
  if (!session.empty()) message["sessionId"] = session;
  if (!parameters.is_null()) message["params"] = std::move(parameters);
  // A connection that has broken is noticed by the receiving thread, which answers whoever waits.
  static_cast<void>(socket_->Send(message.dump(-1, ' ', false, Json::error_handler_t::replace)));
}

void DevToolsClient::AddSession(const std::string& session, std::shared_ptr<SessionSink> sink) {
  const std::scoped_lock lock(mutex_);
  if (lost_) return sink->OnLost();
  sessions_[session] = std::move(sink);
}

void DevToolsClient::RemoveSession(const std::string& session) {
  const std::scoped_lock lock(mutex_);
  sessions_.erase(session);
}

void DevToolsClient::Run() {
  while (auto text = socket_->Receive()) {
    try {
      Dispatch(std::move(*text));
    } catch (const nlohmann::json::exception&) {
      // One message that is not understood must not cost the connection.
    }
  }
}

void DevToolsClient::Dispatch(std::string text) {
  Json message = ParseDevToolsMessage(std::move(text));
  if (message.contains("id")) {
    const std::scoped_lock lock(mutex_);
    auto found = waiting_.extract(message["id"].get<std::int64_t>());
    if (found.empty()) return;
    const bool failed = message.contains("error");
    found.mapped().Answer(failed ? E_FAIL : S_OK, std::move(message[failed ? "error" : "result"]));
    return;
  }
  std::shared_ptr<SessionSink> sink;
  {
    const std::scoped_lock lock(mutex_);
    const auto found = sessions_.find(message.value("sessionId", ""));
    if (found != sessions_.end()) sink = found->second;
  }
  if (sink) sink->OnEvent(message["method"].get<std::string>(), message["params"]);
}

void DevToolsClient::Lose() {
  std::map<std::int64_t, Waiting> waiting;
  std::map<std::string, std::shared_ptr<SessionSink>> sessions;
  {
    const std::scoped_lock lock(mutex_);
    lost_ = true;
    waiting.swap(waiting_);
    sessions.swap(sessions_);
  }
  for (auto& [id, call] : waiting)
    call.Answer(kBrowserLost, nullptr);
  for (const auto& [session, sink] : sessions)
    sink->OnLost();
}

}  // namespace qv::devhost
