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

/// False when nothing came (or the peer took nothing) within the time.
[[nodiscard]] bool WaitReadable(SOCKET socket, int milliseconds);
[[nodiscard]] bool WaitWritable(SOCKET socket, int milliseconds);

/// Bytes received, 0 at the peer's end, below 0 when the connection is lost or the time is over.
[[nodiscard]] int ReceiveSome(SOCKET socket, char* buffer, std::size_t size, int milliseconds);

/// Sends all of it; false when the connection is lost or the peer takes nothing for so long.
[[nodiscard]] bool SendAll(SOCKET socket, std::string_view bytes, int milliseconds);

/// Whether the peer has cut the connection. One that only has nothing more to say has not.
[[nodiscard]] bool IsCut(SOCKET socket);

}  // namespace qv::devhost
