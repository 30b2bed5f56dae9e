#include "httpapi/connection.h"

#include <algorithm>
#include <array>

#include "httpapi/exchange.h"
#include "httpapi/http_clock.h"
#include "httpapi/last_catch.h"
#include "httpapi/request_queue.h"

namespace qv::devhost {
namespace {

constexpr std::size_t kReceiveSize = 16 * 1024;
/// How long a client that was told everything may still send.
constexpr int kLingerMs = 500;

}  // namespace

Connection::Connection(UniqueSocket socket, HttpLimits limits) : stream_(std::move(socket)), limits_(limits) {
  int size = sizeof(peer_);
  getpeername(stream_.Get(), reinterpret_cast<sockaddr*>(&peer_), &size);
  size = sizeof(own_);
  getsockname(stream_.Get(), reinterpret_cast<sockaddr*>(&own_), &size);
}

void Connection::Serve(const std::shared_ptr<Connection>& connection,
                       const std::weak_ptr<RequestQueue>& queue) {
  Contain([&] {
    while (connection->ServeOne(connection, queue)) {
    }
  });
  connection->Cut();
}

bool Connection::ServeOne(const std::shared_ptr<Connection>& self, const std::weak_ptr<RequestQueue>& queue) {
  auto head = ReadHead();
  if (!head) return false;
  std::shared_ptr<Exchange> exchange;
  {
    const auto open = queue.lock();
    if (!open) return false;
    exchange = open->Offer(self, std::move(*head));
  }
  if (!exchange) {
    Refuse(503);
    return false;
  }
  // Without the queue in hand: it must be free to go meanwhile.
  return exchange->WaitUntilAnswered() && exchange->SkipRest();
}

std::optional<RequestHead> Connection::ReadHead() {
  const ULONGLONG until = GetTickCount64() + static_cast<ULONGLONG>(limits_.waitMs);
  std::array<char, kReceiveSize> piece;
  RequestHead head;
  for (;;) {
    const HeadResult result = ParseRequestHead(buffered_, limits_.headBytes, head);
    if (result.state == HeadResult::State::Complete) {
      buffered_.erase(0, result.size);
      return head;
    }
    if (result.state == HeadResult::State::Refused) {
      Refuse(result.status);
      return std::nullopt;
    }
    const ULONGLONG now = GetTickCount64();
    const int left = now < until ? static_cast<int>(until - now) : 0;
    const int received = stream_.Receive(piece.data(), piece.size(), left);
    if (received <= 0) return std::nullopt;
    buffered_.append(piece.data(), static_cast<std::size_t>(received));
  }
}

void Connection::Refuse(int status) {
  if (Send(WriteRefusal(status, HttpNow()))) Linger();
}

void Connection::Linger() {
  stream_.EndSending();
  const ULONGLONG until = GetTickCount64() + kLingerMs;
  std::array<char, kReceiveSize> rest;
  while (GetTickCount64() < until && stream_.Receive(rest.data(), rest.size(), kLingerMs) > 0) {
  }
}

int Connection::Receive(char* buffer, std::size_t size) {
  if (buffered_.empty()) return stream_.Receive(buffer, size, limits_.waitMs);
  const std::size_t taken = std::min(size, buffered_.size());
  std::copy_n(buffered_.begin(), taken, buffer);
  buffered_.erase(0, taken);
  return static_cast<int>(taken);
}

bool Connection::Send(std::string_view bytes) {
  return stream_.Send(bytes, limits_.waitMs);
}

}  // namespace qv::devhost
