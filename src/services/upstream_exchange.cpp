#include "services/upstream_exchange.h"

#include <windows.h>

#include <utility>

#include "foundation/guard.h"
#include "foundation/worker_thread.h"

namespace qv {
namespace {

HttpResponse Aborted() {
  HttpResponse response;
  response.error = L"HTTP request failed";
  response.systemError = ERROR_OPERATION_ABORTED;
  return response;
}

}  // namespace

std::shared_ptr<UpstreamExchange> UpstreamExchange::Start(HttpRequest request) {
  auto exchange = std::make_shared<UpstreamExchange>();
  const bool started = StartDetachedWorker(
      L"UpstreamExchange", [exchange, request = std::move(request)] { exchange->Run(request); });
  return started ? exchange : nullptr;
}

void UpstreamExchange::Run(const HttpRequest& request) {
  HttpResponse outcome = Aborted();
  // Whoever waits must learn of the end, also when memory runs out on the way.
  Guard(L"UpstreamExchange request", [&] {
    outcome = SendHttp(
        request, [this](int, std::string_view piece) { return TakePiece(piece); },
        [this](const HttpResponse& head) { return TakeHead(head); });
  });
  const std::scoped_lock lock(mutex_);
  outcome_ = std::move(outcome);
  changed_.notify_all();
}

bool UpstreamExchange::TakeHead(const HttpResponse& head) {
  const std::scoped_lock lock(mutex_);
  head_ = head;
  changed_.notify_all();
  return !calledOff_;
}

bool UpstreamExchange::TakePiece(std::string_view piece) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return calledOff_ || piece_.empty(); });
  if (calledOff_) return false;
  piece_ = piece;
  changed_.notify_all();
  return true;
}

std::optional<HttpResponse> UpstreamExchange::WaitForHead() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return calledOff_ || head_ || outcome_; });
  return calledOff_ ? std::nullopt : head_;
}

bool UpstreamExchange::NextPiece(std::string& piece) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return calledOff_ || !piece_.empty() || outcome_; });
  if (calledOff_ || piece_.empty()) return false;
  // The buffers change places, so that none is made anew for each piece.
  piece.clear();
  std::swap(piece, piece_);
  changed_.notify_all();
  return true;
}

HttpResponse UpstreamExchange::Outcome() {
  const std::scoped_lock lock(mutex_);
  return calledOff_ ? Aborted() : outcome_.value_or(Aborted());
}

void UpstreamExchange::CallOff() {
  const std::scoped_lock lock(mutex_);
  calledOff_ = true;
  changed_.notify_all();
}

}  // namespace qv
