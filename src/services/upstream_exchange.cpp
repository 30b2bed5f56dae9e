#include "services/upstream_exchange.h"

#include <windows.h>

#include <utility>

#include "foundation/guard.h"
#include "foundation/worker_thread.h"

namespace qv {
namespace {

/// No smaller than what the client reads at once.
constexpr std::size_t kUnreadBytes = 16 * 1024;

HttpResponse Failure(DWORD systemError) {
  HttpResponse response;
  response.error = L"HTTP request failed";
  response.systemError = systemError;
  return response;
}

HttpResponse Aborted() {
  return Failure(ERROR_OPERATION_ABORTED);
}

}  // namespace

/// The exchange's lock for the time of its life; what is changed under it wakes whoever waits.
class UpstreamExchange::Lock {
 public:
  explicit Lock(UpstreamExchange& exchange) : exchange_(exchange) {
    AcquireSRWLockExclusive(&exchange_.lock_);
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  ~Lock() { ReleaseSRWLockExclusive(&exchange_.lock_); }

  template <typename Condition>
  void WaitUntil(Condition&& condition) {
    while (!condition())
      SleepConditionVariableSRW(&exchange_.changed_, &exchange_.lock_, INFINITE, 0);
  }
  void WakeOthers() { WakeAllConditionVariable(&exchange_.changed_); }

 private:
  UpstreamExchange& exchange_;
};

std::shared_ptr<UpstreamExchange> UpstreamExchange::Start(HttpRequest request) {
  auto exchange = std::make_shared<UpstreamExchange>();
  const bool started = StartDetachedWorker(
      L"UpstreamExchange", [exchange, request = std::move(request)] { exchange->Run(request); });
  if (!started) exchange->outcome_ = Failure(GetLastError());
  return exchange;
}

void UpstreamExchange::Run(const HttpRequest& request) {
  HttpResponse outcome = Aborted();
  // Whoever waits must learn of the end, also when memory runs out on the way.
  Guard(L"UpstreamExchange request", [&] {
    outcome = SendHttp(
        request, [this](int, std::string_view piece) { return TakePiece(piece); },
        [this](const HttpResponse& head) { return TakeHead(head); });
  });
  Lock lock(*this);
  outcome_ = std::move(outcome);
  lock.WakeOthers();
}

bool UpstreamExchange::TakeHead(const HttpResponse& head) {
  Lock lock(*this);
  head_ = head;
  lock.WakeOthers();
  return !calledOff_;
}

bool UpstreamExchange::TakePiece(std::string_view piece) {
  Lock lock(*this);
  lock.WaitUntil(
      [&] { return calledOff_ || piece_.empty() || piece_.size() + piece.size() <= kUnreadBytes; });
  if (calledOff_) return false;
  piece_ += piece;
  lock.WakeOthers();
  return true;
}

std::optional<HttpResponse> UpstreamExchange::WaitForHead() {
  Lock lock(*this);
  lock.WaitUntil([this] { return calledOff_ || head_ || outcome_; });
  return calledOff_ ? std::nullopt : head_;
}

bool UpstreamExchange::NextPiece(std::string& piece) {
  Lock lock(*this);
  lock.WaitUntil([this] { return calledOff_ || !piece_.empty() || outcome_; });
  if (calledOff_ || piece_.empty()) return false;
  // The buffers change places, so that none is made anew for each piece.
  piece.clear();
  std::swap(piece, piece_);
  lock.WakeOthers();
  return true;
}

HttpResponse UpstreamExchange::Outcome() {
  Lock lock(*this);
  return calledOff_ ? Aborted() : outcome_.value_or(Aborted());
}

void UpstreamExchange::CallOff() {
  Lock lock(*this);
  calledOff_ = true;
  lock.WakeOthers();
}

}  // namespace qv
