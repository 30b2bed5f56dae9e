#include "page_server.h"

#include <winsock2.h>

#include <algorithm>
#include <cstdlib>

#include "../foundation/loopback_listener.h"

namespace qv::test {
namespace {

constexpr DWORD kSilenceLimitMs = 300;

/// The path of the request line; empty when none came in time.
std::string ReceivePath(SOCKET connection) {
  setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&kSilenceLimitMs),
             sizeof(kSilenceLimitMs));
  std::string request;
  char piece[4096];
  while (request.find("\r\n\r\n") == std::string::npos) {
    const int got = recv(connection, piece, sizeof(piece), 0);
    if (got <= 0) return {};
    request.append(piece, static_cast<std::size_t>(got));
  }
  const std::size_t begin = request.find(' ') + 1;
  return request.substr(begin, request.find(' ', begin) - begin);
}

}  // namespace

PageServer::PageServer(std::map<std::string, std::string> answers)
    : answers_(std::move(answers)), listener_(ListenOnLoopback(port_)), thread_([this] { Serve(); }) {}

PageServer::~PageServer() {
  stopping_ = true;
  thread_.join();
  for (const auto connection : held_)
    closesocket(connection);
  closesocket(listener_);
  WSACleanup();
}

std::wstring PageServer::Url(const std::wstring& path) const {
  return L"http://127.0.0.1:" + std::to_wstring(port_) + path;
}

bool PageServer::WasAsked(const std::string& path) {
  const std::scoped_lock lock(mutex_);
  return std::find(asked_.begin(), asked_.end(), path) != asked_.end();
}

void PageServer::Serve() {
  while (!stopping_) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(static_cast<SOCKET>(listener_), &set);
    timeval slice{0, 20'000};
    if (select(0, &set, nullptr, nullptr, &slice) > 0) Answer(accept(listener_, nullptr, nullptr));
  }
}

void PageServer::Answer(std::uintptr_t connection) {
  const std::string path = ReceivePath(connection);
  {
    const std::scoped_lock lock(mutex_);
    asked_.push_back(path);
  }
  const auto answer = answers_.find(path);
  if (!path.empty() && answer == answers_.end()) {
    held_.push_back(connection);
    return;
  }
  if (!path.empty()) send(connection, answer->second.data(), static_cast<int>(answer->second.size()), 0);
  shutdown(connection, SD_SEND);
  closesocket(connection);
}

std::uint16_t ClosedPort() {
  std::uint16_t port = 0;
  closesocket(ListenOnLoopback(port));
  WSACleanup();
  return port;
}

std::string Html(const std::string& text, const std::string& status) {
  return "HTTP/1.1 " + status +
         "\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " + std::to_string(text.size()) +
         "\r\nConnection: close\r\n\r\n" + text;
}

}  // namespace qv::test
