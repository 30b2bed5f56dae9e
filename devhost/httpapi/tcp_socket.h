#pragma once

#include <winsock2.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "foundation/unique_handle.h"

namespace qv::devhost {

struct SocketTraits {
  using Type = SOCKET;
  static Type None() { return INVALID_SOCKET; }
  static void Close(Type handle) { closesocket(handle); }
};
using UniqueSocket = UniqueHandle<SocketTraits>;

/// Starts Winsock once for the process, which ends it.
[[nodiscard]] bool StartWinsock();

/// A socket that listens on the port of 127.0.0.1, or none when somebody else has it.
[[nodiscard]] UniqueSocket ListenOn(std::uint16_t port);

/// A connected socket of which one thread at a time makes use; `Cut` is for any.
class TcpStream {
 public:
  explicit TcpStream(UniqueSocket socket);

  /// Bytes received, 0 at the peer's end, below 0 when the connection is lost or cut or nothing came in time.
  [[nodiscard]] int Receive(char* buffer, std::size_t size, int milliseconds);
  /// Sends all of it; false when the connection is lost or cut, or the peer takes nothing for so long.
  [[nodiscard]] bool Send(std::string_view bytes, int milliseconds);
  /// Tells the peer that nothing more comes.
  void EndSending() { shutdown(socket_.Get(), SD_SEND); }

  /// Ends the connection and whatever waits for it. What was sent still arrives.
  void Cut();
  /// Whether the peer has cut the connection. One that only has nothing more to say has not.
  [[nodiscard]] bool IsLost() const;

  [[nodiscard]] SOCKET Get() const { return socket_.Get(); }

 private:
  [[nodiscard]] bool WaitUntilReady(int milliseconds) const;

  UniqueSocket socket_;
  /// Set when the socket has become readable or writable, or has ended.
  UniqueKernelHandle ready_;
  UniqueKernelHandle cut_;
};

}  // namespace qv::devhost
