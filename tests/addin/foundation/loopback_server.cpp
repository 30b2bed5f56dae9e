#include "loopback_server.h"

#include <winsock2.h>

#include <chrono>
#include <cstdlib>

#include "loopback_listener.h"

namespace qv {
namespace {

constexpr auto kLimit = std::chrono::seconds(10);

std::size_t BodyLength(const std::string& head) {
  const std::size_t at = head.find("Content-Length:");
  return at == std::string::npos ? 0 : std::strtoul(head.c_str() + at + 15, nullptr, 10);
}

std::string ReceiveRequest(SOCKET connection) {
  std::string request;
  std::size_t wanted = std::string::npos;
  while (request.size() < wanted) {
    char piece[4096];
    const int got = recv(connection, piece, sizeof(piece), 0);
    if (got <= 0) break;
    request.append(piece, static_cast<std::size_t>(got));
    // A TLS greeting: its sender waits for an answer that this server cannot give.
    if (request[0] == '\x16') break;
    const std::size_t end = request.find("\r\n\r\n");
    if (end != std::string::npos) wanted = end + 4 + BodyLength(request);
  }
  return request;
}

}  // namespace

LoopbackServer::LoopbackServer(std::vector<std::string> replies)
    : listener_(ListenOnLoopback(port_)), thread_([this, replies = std::move(replies)] { Serve(replies); }) {}

LoopbackServer::~LoopbackServer() {
  stopping_ = true;
  thread_.join();
  closesocket(listener_);
  WSACleanup();
}

std::vector<std::string> LoopbackServer::WaitForRequests(std::size_t count) {
  std::unique_lock lock(mutex_);
  arrived_.wait_for(lock, kLimit, [&] { return requests_.size() >= count; });
  return requests_;
}

bool LoopbackServer::WaitForConnection() const {
  while (!stopping_) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(static_cast<SOCKET>(listener_), &set);
    timeval slice{0, 50'000};
    if (select(0, &set, nullptr, nullptr, &slice) > 0) return true;
  }
  return false;
}

void LoopbackServer::Serve(const std::vector<std::string>& replies) {
  for (const std::string& reply : replies) {
    if (!WaitForConnection()) return;
    const SOCKET connection = accept(listener_, nullptr, nullptr);
    DWORD limit = 10'000;
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&limit), sizeof(limit));
    std::string request = ReceiveRequest(connection);
    send(connection, reply.data(), static_cast<int>(reply.size()), 0);
    shutdown(connection, SD_SEND);
    closesocket(connection);
    const std::lock_guard lock(mutex_);
    requests_.push_back(std::move(request));
    arrived_.notify_all();
  }
}

std::uint16_t ClosedPort() {
  std::uint16_t port = 0;
  closesocket(ListenOnLoopback(port));
  WSACleanup();
  return port;
}

}  // namespace qv
