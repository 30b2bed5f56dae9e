#pragma once

#include <cstdint>
#include <memory>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "translation/http_transport.h"
#include "translation/pending_requests.h"
#include "translation/run_flags.h"
#include "translation/run_translation.h"
#include "translation/translate_request.h"

namespace qv {

/// Receives on the UI thread what a run's worker produces, in order.
class RunListener {
 public:
  virtual ~RunListener() = default;
  virtual void OnBatchTranslated(std::uint64_t runId, TranslatedBatch batch) = 0;
  /// The last word of a worker.
  virtual void OnTranslationEnded(std::uint64_t runId, const RunEnd& end) = 0;
};

/// The way from workers, which may outlive their pane, to the listener, which does not.
class RunMailbox {
 public:
  /// The listener is valid until `Close`.
  explicit RunMailbox(RunListener& listener) : listener_(&listener) {}

  /// Nothing reaches the listener any more. UI thread.
  void Close() { listener_ = nullptr; }
  /// Null once closed. UI thread.
  [[nodiscard]] RunListener* Listener() const { return listener_; }

 private:
  RunListener* listener_;
};

/// Everything that a run's worker needs, owned by it or jointly with others.
struct RunJob {
  std::shared_ptr<PaneContext> pane;
  std::shared_ptr<RunMailbox> mailbox;
  std::shared_ptr<RunFlags> flags;
  RunTexts texts;
  /// What all batches share, with the run's id.
  TranslateRequest head;
  TerminologySource terminology;
  ServiceAccess access;
  /// Null sends straight to the service; otherwise the page performs the requests.
  std::shared_ptr<PendingRequests> pending;
  /// See `PanelTransport`.
  PanelOutput* output = nullptr;
};

/// Translates the job's texts on a thread of its own. False when it could not be started.
[[nodiscard]] bool StartRunWorker(RunJob job);

}  // namespace qv
