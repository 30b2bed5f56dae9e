#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "webview2/chromium/devtools_json.h"
#include "webview2/chromium/devtools_socket.h"
#include "webview2/completion_queue.h"

namespace qv::devhost {

/// What waits for a browser that has gone ends with this.
inline constexpr HRESULT kBrowserLost = static_cast<HRESULT>(0x8007042B);  // ERROR_PROCESS_ABORTED

/// Takes what one session reports, on the receiving thread.
class SessionSink {
 public:
  virtual ~SessionSink() = default;
  virtual void OnEvent(const std::string& method, Json& parameters) = 0;
  /// The connection has ended; nothing follows.
  virtual void OnLost() = 0;
};

/// The DevTools protocol over one connection, all pages in it as sessions. Any thread may call; replies come
/// through the caller's queue.
class DevToolsClient {
 public:
  /// Receives S_OK and the result, E_FAIL and what the browser says is wrong, or `kBrowserLost` and null.
  using Reply = std::function<void(HRESULT, const Json&)>;

  explicit DevToolsClient(std::unique_ptr<DevToolsSocket> socket) : socket_(std::move(socket)) {}

  /// An empty session stands for the browser itself, null for no parameters.
  void Call(const std::string& session, const char* method, Json parameters,
            const CompletionQueue::Entrance& queue, Reply reply);
  void Tell(const std::string& session, const char* method, Json parameters);

  void AddSession(const std::string& session, std::shared_ptr<SessionSink> sink);
  void RemoveSession(const std::string& session);

  /// Receives until the connection ends.
  void Run();
  /// Tells every waiting call and every session that the connection has ended.
  void Lose();
  void Close() { socket_->Close(); }

 private:
  struct Waiting {
    CompletionQueue::Entrance queue;
    Reply reply;

    void Answer(HRESULT result, Json value);
  };

  void Send(std::int64_t id, const std::string& session, const char* method, Json parameters);
  void Dispatch(std::string text);

  std::unique_ptr<DevToolsSocket> socket_;
  std::mutex mutex_;
  bool lost_ = false;
  std::int64_t lastId_ = 0;
  std::map<std::int64_t, Waiting> waiting_;
  std::map<std::string, std::shared_ptr<SessionSink>> sessions_;
};

}  // namespace qv::devhost
