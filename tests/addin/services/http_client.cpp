#include "http_client.h"

#include <winsock2.h>

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace qv {
namespace {

constexpr DWORD kPatienceMs = 10'000;
/// In the place of what did not come, so that silence is not taken for the connection's end.
constexpr std::string_view kStillOpen = "(still open)";

}  // namespace

HttpClient::HttpClient(std::uint16_t port) {
  WSADATA data{};
  static_cast<void>(WSAStartup(MAKEWORD(2, 2), &data));
  socket_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&kPatienceMs),
             sizeof(kPatienceMs));
  setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, reinterpret_cast<const char*>(&kPatienceMs),
             sizeof(kPatienceMs));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  connected_ = connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}

HttpClient::~HttpClient() {
  closesocket(socket_);
  WSACleanup();
}

bool HttpClient::Send(std::string_view bytes) {
  while (!bytes.empty()) {
    const int sent = send(socket_, bytes.data(), static_cast<int>(bytes.size()), 0);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

bool HttpClient::HasNews() const {
  fd_set set{};
  set.fd_count = 1;
  set.fd_array[0] = socket_;
  timeval now{};
  return select(0, &set, nullptr, nullptr, &now) == 1;
}

bool HttpClient::ReceiveMore() {
  std::array<char, 64 * 1024> piece;
  const int received = recv(socket_, piece.data(), static_cast<int>(piece.size()), 0);
  if (received <= 0) {
    if (received < 0 && WSAGetLastError() == WSAETIMEDOUT) received_ += kStillOpen;
    return false;
  }
  received_.append(piece.data(), static_cast<std::size_t>(received));
  return true;
}

std::string HttpClient::ReadUntil(std::string_view end) {
  std::size_t at = 0;
  while ((at = received_.find(end)) == std::string::npos && ReceiveMore()) {
  }
  const std::size_t size = at == std::string::npos ? received_.size() : at + end.size();
  const std::string text = received_.substr(0, size);
  received_.erase(0, size);
  return text;
}

std::string HttpClient::ReadToEnd() {
  while (ReceiveMore()) {
  }
  return std::exchange(received_, {});
}

std::string HttpClient::ReadAnswer() {
  std::string answer = ReadUntil("\r\n\r\n");
  const std::size_t at = answer.find("Content-Length: ");
  if (at == std::string::npos) return answer;
  const std::size_t size = std::strtoul(answer.c_str() + at + 16, nullptr, 10);
  while (received_.size() < size && ReceiveMore()) {
  }
  const std::size_t taken = std::min(size, received_.size());
  answer += received_.substr(0, taken);
  received_.erase(0, taken);
  return answer;
}

void HttpClient::Cut() {
  const LINGER atOnce{1, 0};
  setsockopt(socket_, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce), sizeof(atOnce));
  closesocket(std::exchange(socket_, INVALID_SOCKET));
}

std::string Ask(std::uint16_t port, std::string_view request) {
  HttpClient client(port);
  if (!client.Send(request)) return {};
  return client.ReadAnswer();
}

std::string GetText(std::string_view path) {
  return "GET " + std::string(path) + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
}

std::string PostText(std::string_view path, std::string_view body, std::string_view headers) {
  return "POST " + std::string(path) + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + std::string(headers) +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

std::string BodyOf(const std::string& answer) {
  const std::size_t at = answer.find("\r\n\r\n");
  return at == std::string::npos ? std::string() : answer.substr(at + 4);
}

bool Eventually(const std::function<bool()>& condition) {
  const ULONGLONG until = GetTickCount64() + kPatienceMs;
  while (!condition()) {
    if (GetTickCount64() >= until) return false;
    // Lets the others run between two looks.
    Sleep(2);
  }
  return true;
}

EnvironmentScope::EnvironmentScope(const wchar_t* name, const wchar_t* value) : name_(name) {
  SetEnvironmentVariableW(name, value);
}

EnvironmentScope::~EnvironmentScope() {
  SetEnvironmentVariableW(name_, nullptr);
}

}  // namespace qv
