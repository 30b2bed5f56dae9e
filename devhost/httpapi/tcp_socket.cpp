#include "httpapi/tcp_socket.h"

#include <algorithm>

namespace qv::devhost {
namespace {

constexpr std::size_t kLargestPiece = 256 * 1024;

timeval ToTimeval(int milliseconds) {
  return {milliseconds / 1000, (milliseconds % 1000) * 1000};
}

fd_set OnlyThis(SOCKET socket) {
  fd_set set{};
  set.fd_count = 1;
  set.fd_array[0] = socket;
  return set;
}

}  // namespace

bool StartWinsock() {
  static const bool started = [] {
    WSADATA data{};
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
  }();
  return started;
}

UniqueSocket ListenOn(std::uint16_t port) {
  UniqueSocket listener(socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
  // Wine gives this option its Unix meaning: former connections do not keep the port, a listener does.
  // Windows would share the port instead, but there nobody needs this library.
  const BOOL reuse = TRUE;
  setsockopt(listener.Get(), SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&reuse), sizeof(reuse));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(listener.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
      listen(listener.Get(), SOMAXCONN) != 0) {
    return UniqueSocket();
  }
  return listener;
}

bool WaitReadable(SOCKET socket, int milliseconds) {
  fd_set set = OnlyThis(socket);
  timeval time = ToTimeval(std::max(milliseconds, 0));
  return select(0, &set, nullptr, nullptr, &time) == 1;
}

bool WaitWritable(SOCKET socket, int milliseconds) {
  fd_set set = OnlyThis(socket);
  timeval time = ToTimeval(std::max(milliseconds, 0));
  return select(0, nullptr, &set, nullptr, &time) == 1;
}

int ReceiveSome(SOCKET socket, char* buffer, std::size_t size, int milliseconds) {
  if (!WaitReadable(socket, milliseconds)) return -1;
  return recv(socket, buffer, static_cast<int>(std::min(size, kLargestPiece)), 0);
}

bool SendAll(SOCKET socket, std::string_view bytes, int milliseconds) {
  while (!bytes.empty()) {
    const int piece = static_cast<int>(std::min(bytes.size(), kLargestPiece));
    const int sent = send(socket, bytes.data(), piece, 0);
    if (sent > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    } else if (WSAGetLastError() != WSAEWOULDBLOCK || !WaitWritable(socket, milliseconds)) {
      return false;
    }
  }
  return true;
}

bool IsCut(SOCKET socket) {
  // Reading does not tell: under Wine the end of a cut connection may look like an orderly one.
  return send(socket, "", 0, 0) < 0 && WSAGetLastError() != WSAEWOULDBLOCK;
}

}  // namespace qv::devhost
