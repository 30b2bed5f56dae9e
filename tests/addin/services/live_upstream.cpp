#include "live_upstream.h"

#include <winsock2.h>

#include <array>
#include <cstdlib>
#include <utility>

#include "foundation/loopback_listener.h"

namespace qv {
namespace {

constexpr DWORD kPatienceMs = 10'000;

bool IsReadable(SOCKET socket, DWORD waitMs) {
  fd_set set{};
  set.fd_count = 1;
  set.fd_array[0] = socket;
  timeval wait{static_cast<long>(waitMs / 1000), static_cast<long>(waitMs % 1000 * 1000)};
  return select(0, &set, nullptr, nullptr, &wait) == 1;
}

/// How long the request is, as soon as its head tells.
std::size_t RequestLength(const std::string& request) {
  const std::size_t end = request.find("\r\n\r\n");
  if (end == std::string::npos) return std::string::npos;
  const std::size_t at = request.find("Content-Length:");
  return end + 4 + (at < end ? std::strtoul(request.c_str() + at + 15, nullptr, 10) : 0);
}

}  // namespace

LiveUpstream::LiveUpstream() : listener_(ListenOnLoopback(port_)), connection_(INVALID_SOCKET) {}

LiveUpstream::~LiveUpstream() {
  Cut();
  closesocket(listener_);
  WSACleanup();
}

std::string LiveUpstream::TakeRequest() {
  Cut();
  if (!IsReadable(listener_, kPatienceMs)) return {};
  connection_ = accept(listener_, nullptr, nullptr);
  std::string request;
  std::array<char, 64 * 1024> piece;
  while (request.size() < RequestLength(request) && IsReadable(connection_, kPatienceMs)) {
    const int got = recv(connection_, piece.data(), static_cast<int>(piece.size()), 0);
    if (got <= 0) break;
    request.append(piece.data(), static_cast<std::size_t>(got));
  }
  return request;
}

bool LiveUpstream::Say(std::string_view bytes) {
  while (!bytes.empty()) {
    const int sent = send(connection_, bytes.data(), static_cast<int>(bytes.size()), 0);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void LiveUpstream::End() {
  shutdown(connection_, SD_SEND);
}

void LiveUpstream::Cut() {
  if (connection_ == INVALID_SOCKET) return;
  const LINGER atOnce{1, 0};
  setsockopt(connection_, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce), sizeof(atOnce));
  closesocket(std::exchange(connection_, INVALID_SOCKET));
}

bool LiveUpstream::HasBeenLeft() {
  char byte = 0;
  return IsReadable(connection_, kPatienceMs) && recv(connection_, &byte, 1, 0) <= 0;
}

}  // namespace qv
