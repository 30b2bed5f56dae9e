#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "foundation/unique_handle.h"
#include "services/listener_request.h"
#include "services/listener_responder.h"

namespace qv {

class RequestIntake;

/// How long a newcomer waits for the former owner of its port.
struct TakeOverPatience {
  int retries = 120;
  DWORD pauseMs = 250;
};

/// What one local service differs in from another.
struct ListenerService {
  std::uint16_t port = 0;
  /// Of the client that asks the port's owner to yield.
  std::wstring userAgent;
  /// Whether the worker is in the multithreaded apartment of COM.
  bool workerJoinsCom = false;
  /// Answers a request, on the worker. The responder is used before it returns.
  std::function<void(const ListenerRequest&, ListenerResponder&)> handle;
  /// What the service says about its start, without prefix or line end; empty for a service that says
  /// nothing.
  std::function<void(std::wstring_view)> log;
  /// Wakes whatever of `handle` waits for the UI thread, which is in `Stop`; called there, more than once if
  /// need be.
  std::function<void()> wakeWaiters;
  /// Called by `Start` when the port is taken, ahead of the request to yield: another owner in this process
  /// can be stopped here, or those who wait for its answers woken. The port is tried once more behind it.
  std::function<void()> beforeYield;
  TakeOverPatience patience;
};

/// A local service: one URL of 127.0.0.1, and one worker that serves its requests one after the other. A
/// newcomer on the same port, in this process or another, asks the owner to let go; the owner then stops and
/// does not come back by itself. Start and Stop belong to one thread, the host's UI thread.
class LoopbackListener {
 public:
  explicit LoopbackListener(ListenerService service);
  LoopbackListener(const LoopbackListener&) = delete;
  LoopbackListener& operator=(const LoopbackListener&) = delete;
  /// Stops.
  ~LoopbackListener();

  /// True when the service listens, also when it did before. Takes up to half a minute when the port's owner
  /// answers and does not let go; false then leaves nothing behind. Ends the process when no thread can be
  /// started.
  [[nodiscard]] bool Start();

  /// Ends the service and waits for its worker; does nothing when it never started. Ends the process when it
  /// is called by the worker, which would wait for itself.
  void Stop();

  /// From any thread.
  [[nodiscard]] bool IsRunning() const { return running_.load(); }
  [[nodiscard]] std::uint16_t Port() const { return service_.port; }

 private:
  static DWORD WINAPI WorkerMain(void* parameter) noexcept;
  [[nodiscard]] bool TakePort(HttpQueue& queue) const;
  void Log(std::wstring_view text) const;
  void StartWorker();
  void RunLoop();
  void ServeRequests();
  void Serve(RequestIntake& intake, ListenerRequest& request);
  void WaitForWorker();
  /// Ends what the worker waits for in the queue; while it is with a request only when the grace is over.
  void WakeWorker(bool graceIsOver);
  void CloseQueue();

  const ListenerService service_;
  std::atomic<bool> running_{false};
  std::atomic<bool> stopRequested_{false};
  /// The request that the worker has, 0 between requests.
  std::atomic<std::uint64_t> current_{0};
  UniqueKernelHandle worker_;
  DWORD workerId_ = 0;
  /// The worker gives the queue back while Stop may want to wake it.
  std::mutex queueMutex_;
  std::unique_ptr<HttpQueue> queue_;
};

}  // namespace qv
