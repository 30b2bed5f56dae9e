#include "httpapi/tcp_socket.h"

#include <algorithm>
#include <array>

namespace qv::devhost {
namespace {

constexpr std::size_t kLargestPiece = 256 * 1024;

bool WouldBlock() {
  return WSAGetLastError() == WSAEWOULDBLOCK;
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

TcpStream::TcpStream(UniqueSocket socket)
    : socket_(std::move(socket)),
      ready_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      cut_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  // Also makes every call return at once.
  WSAEventSelect(socket_.Get(), ready_.Get(), FD_READ | FD_WRITE | FD_CLOSE);
  const BOOL noDelay = TRUE;
  setsockopt(socket_.Get(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&noDelay),
             sizeof(noDelay));
}

bool TcpStream::WaitUntilReady(int milliseconds) const {
  // Wine's own waits for a socket do not end when another thread shuts it down.
  const std::array<HANDLE, 2> waited = {cut_.Get(), ready_.Get()};
  return WaitForMultipleObjects(static_cast<DWORD>(waited.size()), waited.data(), FALSE,
                                static_cast<DWORD>(std::max(milliseconds, 0))) == WAIT_OBJECT_0 + 1;
}

int TcpStream::Receive(char* buffer, std::size_t size, int milliseconds) {
  for (;;) {
    // Reset ahead of the try: what comes after it sets the event again.
    ResetEvent(ready_.Get());
    const int received = recv(socket_.Get(), buffer, static_cast<int>(std::min(size, kLargestPiece)), 0);
    if (received >= 0 || !WouldBlock() || !WaitUntilReady(milliseconds)) return received;
  }
}

bool TcpStream::Send(std::string_view bytes, int milliseconds) {
  while (!bytes.empty()) {
    const int piece = static_cast<int>(std::min(bytes.size(), kLargestPiece));
    int sent = send(socket_.Get(), bytes.data(), piece, 0);
    if (sent < 0 && WouldBlock()) {
      // Only now, as it costs as much as the sending does, and ahead of another try, as in Receive.
      ResetEvent(ready_.Get());
      sent = send(socket_.Get(), bytes.data(), piece, 0);
    }
    if (sent > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    } else if (!WouldBlock() || !WaitUntilReady(milliseconds)) {
      return false;
    }
  }
  return true;
}

void TcpStream::Cut() {
  SetEvent(cut_.Get());
  shutdown(socket_.Get(), SD_BOTH);
}

bool TcpStream::IsLost() const {
  // Reading does not tell: under Wine the end of a cut connection may look like an orderly one.
  return send(socket_.Get(), "", 0, 0) < 0 && !WouldBlock();
}

}  // namespace qv::devhost
