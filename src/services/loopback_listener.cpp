#include "services/loopback_listener.h"

#include <objbase.h>

#include <exception>
#include <utility>

#include "foundation/guard.h"
#include "foundation/text.h"
#include "services/request_intake.h"
#include "services/yield_client.h"

namespace qv {
namespace {

/// Between two calls that wake whoever waits for the UI thread.
constexpr DWORD kWakeIntervalMs = 20;
/// How long a stop lets the worker finish its answer before it gives up the client.
constexpr ULONGLONG kGraceMs = 500;

/// The multithreaded apartment for the time of its life.
class ComMembership {
 public:
  explicit ComMembership(bool join)
      : joined_(join && SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
  ComMembership(const ComMembership&) = delete;
  ComMembership& operator=(const ComMembership&) = delete;
  ~ComMembership() {
    if (joined_) CoUninitialize();
  }

 private:
  const bool joined_;
};

/// Marks the request that the worker has for the time of its life.
class CurrentMark {
 public:
  CurrentMark(std::atomic<std::uint64_t>& current, std::uint64_t request) : current_(current) {
    current_ = request;
  }
  CurrentMark(const CurrentMark&) = delete;
  CurrentMark& operator=(const CurrentMark&) = delete;
  ~CurrentMark() { current_ = 0; }

 private:
  std::atomic<std::uint64_t>& current_;
};

}  // namespace

LoopbackListener::LoopbackListener(ListenerService service) : service_(std::move(service)) {}

LoopbackListener::~LoopbackListener() {
  Stop();
}

void LoopbackListener::Log(std::wstring_view text) const {
  if (service_.log) service_.log(text);
}

bool LoopbackListener::Start() {
  if (running_) return true;
  WaitForWorker();
  stopRequested_ = false;
  auto queue = std::make_unique<HttpQueue>(service_.port);
  if (const wchar_t* const failed = queue->Open(); failed != nullptr) {
    Log(Concat(failed, L" failed"));
    return false;
  }
  if (!TakePort(*queue)) return false;
  queue_ = std::move(queue);
  running_ = true;
  StartWorker();
  Log(Concat(L"started on 127.0.0.1:", service_.port));
  return true;
}

bool LoopbackListener::TakePort(HttpQueue& queue) const {
  ULONG result = queue.AddUrl();
  if (result != NO_ERROR && service_.beforeYield) {
    service_.beforeYield();
    result = queue.AddUrl();
  }
  if (result != NO_ERROR && RequestYield(service_.port, service_.userAgent)) {
    for (int i = 0; i < service_.patience.retries && result != NO_ERROR; ++i) {
      Sleep(service_.patience.pauseMs);
      result = queue.AddUrl();
    }
  }
  if (result != NO_ERROR) Log(Concat(L"HttpAddUrl failed rc=", result));
  return result == NO_ERROR;
}

void LoopbackListener::StartWorker() {
  worker_.Reset(CreateThread(nullptr, 0, &WorkerMain, this, 0, &workerId_));
  if (!worker_) std::terminate();
}

DWORD WINAPI LoopbackListener::WorkerMain(void* parameter) noexcept {
  auto* const self = static_cast<LoopbackListener*>(parameter);
  Guard(L"LoopbackListener worker", [self] { self->RunLoop(); });
  Guard(L"LoopbackListener end", [self] { self->CloseQueue(); });
  self->running_ = false;
  return 0;
}

void LoopbackListener::RunLoop() {
  const ComMembership membership(service_.workerJoinsCom);
  ServeRequests();
}

void LoopbackListener::ServeRequests() {
  RequestIntake intake(*queue_);
  while (!stopRequested_) {
    // Anew for each request: a large body is not kept until somebody asks again.
    ListenerRequest request;
    if (!intake.Receive(request)) return;
    const CurrentMark mark(current_, request.id);
    // Only behind the mark: a stop that is not seen here sees the mark, and lets the answer go out.
    if (stopRequested_) return;
    Serve(intake, request);
  }
}

void LoopbackListener::Serve(RequestIntake& intake, ListenerRequest& request) {
  ListenerResponder responder(*queue_, request.id);
  bool answered = false;
  Guard(L"LoopbackListener request", [&] {
    intake.ReadBody(request);
    service_.handle(request, responder);
    answered = true;
  });
  // A request that failed halfway costs its client the connection, not the service.
  if (!answered) queue_->Cancel(request.id);
  if (responder.HasYielded()) stopRequested_ = true;
}

void LoopbackListener::Stop() {
  if (!running_ && !worker_) return;
  stopRequested_ = true;
  WaitForWorker();
  stopRequested_ = false;
}

void LoopbackListener::WaitForWorker() {
  if (!worker_) return;
  if (GetCurrentThreadId() == workerId_) std::terminate();
  const ULONGLONG graceEnd = GetTickCount64() + kGraceMs;
  do {
    // Whoever the worker waits for must not wait for the worker: neither this thread nor a client that says
    // nothing.
    if (service_.wakeWaiters) service_.wakeWaiters();
    // Each time: a call that fails, or that comes before the one it is to wake, must not hang the host.
    WakeWorker(GetTickCount64() >= graceEnd);
  } while (WaitForSingleObject(worker_.Get(), kWakeIntervalMs) == WAIT_TIMEOUT);
  worker_.Reset();
  workerId_ = 0;
}

void LoopbackListener::WakeWorker(bool graceIsOver) {
  const std::uint64_t request = current_;
  const std::scoped_lock lock(queueMutex_);
  // A shutdown would cut the request, too.
  if (!queue_ || (request != 0 && !graceIsOver)) return;
  queue_->Shutdown();
  if (!graceIsOver) return;
  if (request != 0) queue_->Cancel(request);
  queue_->CancelCalls();
}

void LoopbackListener::CloseQueue() {
  const std::scoped_lock lock(queueMutex_);
  queue_.reset();
}

}  // namespace qv
