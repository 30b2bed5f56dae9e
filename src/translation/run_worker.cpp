#include "translation/run_worker.h"

#include <string>
#include <utility>

#include "foundation/guard.h"
#include "foundation/logging.h"
#include "foundation/patient_post.h"
#include "foundation/worker_thread.h"
#include "translation/panel_transport.h"

namespace qv {
namespace {

/// Posts each batch as one task. A pane that is closing refuses them, and then they are not wanted any more.
class PostingSink final : public RunSink {
 public:
  explicit PostingSink(const RunJob& job) : job_(job) {}

  void Deliver(TranslatedBatch batch) override {
    Post([mailbox = job_.mailbox, runId = job_.head.runId,
          units = std::make_shared<TranslatedBatch>(std::move(batch))] {
      if (mailbox->Listener() != nullptr) mailbox->Listener()->OnBatchTranslated(runId, std::move(*units));
    });
  }

  void Trace(std::string_view event, const std::wstring& detail) override {
    TraceTranslateEvent(event, detail);
  }

  void End(const RunEnd& end) {
    Post([mailbox = job_.mailbox, runId = job_.head.runId, end] {
      if (mailbox->Listener() != nullptr) mailbox->Listener()->OnTranslationEnded(runId, end);
    });
  }

 private:
  /// A lost batch would be a hole in the sheet, so a full queue is tried again.
  template <typename Task>
  void Post(const Task& task) {
    if (!PostPatiently(*job_.pane, task)) job_.flags->Cancel();
  }

  const RunJob& job_;
};

std::unique_ptr<Transport> MakeTransport(const RunJob& job) {
  if (job.pending == nullptr) return std::make_unique<HttpTransport>(job.access, *job.flags);
  return std::make_unique<PanelTransport>(job.pending, job.pane, *job.output, *job.flags);
}

void Work(const RunJob& job) {
  PostingSink sink(job);
  // A worker that dies must not leave its run waiting for ever.
  RunEnd end{false, L"internal_error", L"Translation worker failed"};
  Guard(L"TranslateRun", [&] {
    const std::unique_ptr<Transport> transport = MakeTransport(job);
    end = TranslateRun(job.texts, job.head, job.terminology, *transport, *job.flags, sink);
  });
  sink.End(end);
}

}  // namespace

bool StartRunWorker(RunJob job) {
  auto owned = std::make_shared<RunJob>(std::move(job));
  return StartDetachedWorker(L"RunWorker", [owned] { Work(*owned); });
}

}  // namespace qv
