#pragma once

#include <winsock2.h>

#include <memory>
#include <optional>
#include <string>

#include "httpapi/limits.h"
#include "httpapi/tcp_socket.h"
#include "httpapi/wire/request_head.h"

namespace qv::devhost {

class RequestQueue;

/// One client. A thread of its own reads heads; while a request is with the application, the application's
/// calls read and write. So one thread at a time uses it, but for `Cut`, which any may call.
class Connection {
 public:
  Connection(UniqueSocket socket, HttpLimits limits);

  /// The client's requests one after the other, as long as the connection lasts and the queue is there.
  static void Serve(const std::shared_ptr<Connection>& connection, const std::weak_ptr<RequestQueue>& queue);

  /// Bytes of the body or of a head, from what is buffered first. 0 at the end, below 0 when lost or too
  /// slow.
  [[nodiscard]] int Receive(char* buffer, std::size_t size);
  /// Puts bytes that turned out to belong to what follows back in front.
  void PutBack(std::string_view bytes) { buffered_.insert(0, bytes); }
  [[nodiscard]] bool HasBuffered() const { return !buffered_.empty(); }

  [[nodiscard]] bool Send(std::string_view bytes);
  [[nodiscard]] bool IsLost() const { return stream_.IsLost(); }

  /// Takes for a moment what the client still sends, once nothing more is said to it: closing with bytes
  /// unread would reset the connection, and what was said with it.
  void Linger();
  /// How long the client may keep anybody waiting, in milliseconds.
  [[nodiscard]] int WaitMs() const { return limits_.waitMs; }

  /// Ends whatever waits for the client. What was sent still arrives.
  void Cut() { stream_.Cut(); }

  [[nodiscard]] const sockaddr_in& Peer() const { return peer_; }
  [[nodiscard]] const sockaddr_in& Own() const { return own_; }

 private:
  std::optional<RequestHead> ReadHead();
  bool ServeOne(const std::shared_ptr<Connection>& self, const std::weak_ptr<RequestQueue>& queue);
  void Refuse(int status);

  TcpStream stream_;
  HttpLimits limits_;
  /// Received but not used yet: the begin of a body, or pipelined requests.
  std::string buffered_;
  sockaddr_in peer_{};
  sockaddr_in own_{};
};

}  // namespace qv::devhost
