#include "engines/calc/office_connection.h"

#include <ws2tcpip.h>

#include <array>
#include <stdexcept>

namespace qv::devhost::calc {

namespace {

constexpr DWORD kAnswerMilliseconds = 120 * 1000;
constexpr size_t kChunk = size_t{1} << 16;

}  // namespace

OfficeConnection::OfficeConnection(unsigned short port) {
  WSADATA data{};
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) throw std::runtime_error("Winsock does not start");
  socket_.Reset(socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (!socket_ || connect(socket_.Get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
    socket_.Reset();
    WSACleanup();
    throw std::runtime_error("no office answers on port " + std::to_string(port));
  }
  setsockopt(socket_.Get(), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&kAnswerMilliseconds),
             sizeof(kAnswerMilliseconds));
  // Every call waits for its answer, so a delayed small packet would cost its delay each time.
  const int on = 1;
  setsockopt(socket_.Get(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof(on));
}

OfficeConnection::~OfficeConnection() {
  socket_.Reset();
  WSACleanup();
}

std::optional<std::string> OfficeConnection::Exchange(const std::string& line) {
  if (!socket_) return std::nullopt;
  std::optional<std::string> answer;
  if (SendAll(line + '\n')) answer = ReceiveLine();
  // After a failure the next answer could belong to this question.
  if (!answer) socket_.Reset();
  return answer;
}

bool OfficeConnection::SendAll(const std::string& data) {
  size_t sent = 0;
  while (sent < data.size()) {
    const int count =
        send(socket_.Get(), data.data() + sent, static_cast<int>(std::min(data.size() - sent, kChunk)), 0);
    if (count <= 0) return false;
    sent += static_cast<size_t>(count);
  }
  return true;
}

std::optional<std::string> OfficeConnection::ReceiveLine() {
  std::array<char, kChunk> buffer;
  size_t searched = 0;
  for (;;) {
    const size_t end = received_.find('\n', searched);
    if (end != std::string::npos) {
      std::string line = received_.substr(0, end);
      received_.erase(0, end + 1);
      return line;
    }
    searched = received_.size();
    const int count = recv(socket_.Get(), buffer.data(), static_cast<int>(buffer.size()), 0);
    if (count <= 0) return std::nullopt;
    received_.append(buffer.data(), static_cast<size_t>(count));
  }
}

}  // namespace qv::devhost::calc
