#include "httpapi/request_queue.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include "foundation/text.h"
#include "httpapi/request_buffer.h"

namespace qv::devhost {
namespace {

HTTP_REQUEST_ID NextId() {
  static std::atomic<HTTP_REQUEST_ID> last{0};
  return ++last;
}

bool IsSame(const UrlPrefix& left, const UrlPrefix& right) {
  return left.port == right.port && EqualsIgnoreAsciiCase(left.host, right.host) &&
         EqualsIgnoreAsciiCase(left.path, right.path);
}

}  // namespace

ULONG RequestQueue::AddUrl(const wchar_t* url) {
  auto prefix = ParseUrlPrefix(url);
  if (!prefix) return ERROR_INVALID_PARAMETER;
  std::unique_ptr<UrlClaim> claim;
  const auto onClient = [weak = weak_from_this(), limits = LimitsFromEnvironment()](UniqueSocket socket) {
    if (const auto self = weak.lock()) self->Welcome(std::move(socket), limits);
  };
  const ULONG result = UrlClaim::Acquire(std::move(*prefix), onClient, claim);
  if (result != NO_ERROR) return result;
  const std::scoped_lock lock(mutex_);
  claims_.push_back(std::move(claim));
  return NO_ERROR;
}

ULONG RequestQueue::RemoveUrl(const wchar_t* url) {
  const auto prefix = ParseUrlPrefix(url);
  if (!prefix) return ERROR_INVALID_PARAMETER;
  // Ended without the lock: its thread may be about to take it.
  std::unique_ptr<UrlClaim> removed;
  const std::scoped_lock lock(mutex_);
  const auto found = std::find_if(claims_.begin(), claims_.end(),
                                  [&](const auto& claim) { return IsSame(claim->Prefix(), *prefix); });
  if (found == claims_.end()) return ERROR_FILE_NOT_FOUND;
  removed = std::move(*found);
  claims_.erase(found);
  return NO_ERROR;
}

void RequestQueue::Welcome(UniqueSocket socket, HttpLimits limits) {
  const auto connection = std::make_shared<Connection>(std::move(socket), limits);
  const std::scoped_lock lock(mutex_);
  std::erase_if(connections_, [](const auto& known) { return known.expired(); });
  // Whoever came after the closing would be cut by nobody.
  if (closed_ || connections_.size() >= kMostConnections) return;
  connections_.push_back(connection);
  // The library stays in memory, so the thread may outlive everything else.
  std::thread([connection, weak = weak_from_this()] { Connection::Serve(connection, weak); }).detach();
}

std::shared_ptr<Exchange> RequestQueue::Offer(const std::shared_ptr<Connection>& connection,
                                              RequestHead head) {
  const std::scoped_lock lock(mutex_);
  if (down_ || waiting_.size() >= kLongestQueue) return nullptr;
  auto exchange = std::make_shared<Exchange>(NextId(), connection, std::move(head));
  waiting_.push_back(exchange);
  arrived_.notify_one();
  return exchange;
}

std::shared_ptr<Exchange> RequestQueue::TakeFirst(std::unique_lock<std::mutex>& lock) {
  for (;;) {
    arrived_.wait(lock, [this] { return down_ || !waiting_.empty(); });
    if (down_) return nullptr;
    auto exchange = std::move(waiting_.front());
    waiting_.pop_front();
    // Whoever asked may have gone while the request waited.
    if (!exchange->Client().IsLost()) return exchange;
    exchange->Abort();
  }
}

ULONG RequestQueue::Receive(HTTP_REQUEST_ID id, HTTP_REQUEST* buffer, ULONG size, ULONG& needed) {
  if (buffer == nullptr || size < sizeof(HTTP_REQUEST)) return ERROR_INSUFFICIENT_BUFFER;
  std::shared_ptr<Exchange> exchange;
  if (id != HTTP_NULL_ID) {
    exchange = Find(id);
    if (!exchange) return ERROR_CONNECTION_INVALID;
  } else {
    std::unique_lock lock(mutex_);
    exchange = TakeFirst(lock);
    if (!exchange) return ERROR_OPERATION_ABORTED;
    received_[exchange->Id()] = exchange;
  }
  return DescribeRequest(*exchange, buffer, size, needed);
}

std::shared_ptr<Exchange> RequestQueue::Find(HTTP_REQUEST_ID id) {
  const std::scoped_lock lock(mutex_);
  const auto found = received_.find(id);
  return found == received_.end() ? nullptr : found->second;
}

void RequestQueue::ForgetAnswered(const Exchange& exchange) {
  if (!exchange.IsAnswered()) return;
  const std::scoped_lock lock(mutex_);
  received_.erase(exchange.Id());
}

void RequestQueue::ShutDown() {
  std::vector<std::shared_ptr<Exchange>> unanswered;
  {
    const std::scoped_lock lock(mutex_);
    down_ = true;
    for (const auto& [id, exchange] : received_) {
      if (!exchange->HasBegunAnswer()) unanswered.push_back(exchange);
    }
    arrived_.notify_all();
  }
  for (const auto& exchange : unanswered)
    exchange->Abort();
}

void RequestQueue::Close() {
  ShutDown();
  std::vector<std::unique_ptr<UrlClaim>> claims;
  std::vector<std::weak_ptr<Connection>> connections;
  std::deque<std::shared_ptr<Exchange>> waiting;
  std::map<HTTP_REQUEST_ID, std::shared_ptr<Exchange>> received;
  {
    const std::scoped_lock lock(mutex_);
    closed_ = true;
    claims.swap(claims_);
    connections.swap(connections_);
    waiting.swap(waiting_);
    received.swap(received_);
  }
  for (const auto& exchange : waiting)
    exchange->Abort();
  for (const auto& [id, exchange] : received)
    exchange->Abort();
  for (const auto& weak : connections) {
    if (const auto connection = weak.lock()) connection->Cut();
  }
}

}  // namespace qv::devhost
