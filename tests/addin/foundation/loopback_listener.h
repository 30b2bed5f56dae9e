#pragma once

#include <winsock2.h>

#include <cstdint>
#include <cstdlib>

namespace qv {

/// A listening socket on a free port of 127.0.0.1, for servers that tests run themselves; starts Winsock,
/// which the server ends with itself. Without a socket the test program ends.
[[nodiscard]] inline SOCKET ListenOnLoopback(std::uint16_t& port) {
  WSADATA data{};
  static_cast<void>(WSAStartup(MAKEWORD(2, 2), &data));
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int size = sizeof(address);
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 16) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    std::abort();
  }
  port = ntohs(address.sin_port);
  return listener;
}

}  // namespace qv
