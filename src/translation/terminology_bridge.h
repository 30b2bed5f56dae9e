#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "translation/pending_requests.h"
#include "translation/run_flags.h"
#include "translation/terminology.h"

namespace qv {

/// How long the page may take to resolve a run's terminology, in milliseconds.
inline constexpr DWORD kTerminologyTimeoutMs = 60000;

/// Has one pane's page resolve terminology. Shared by the pane and its workers, which may outlive it.
class TerminologyBridge {
 public:
  /// `output` is used by tasks of the pane's queue only, which is closed before the output goes away.
  TerminologyBridge(std::shared_ptr<PaneContext> pane, PanelOutput& output,
                    DWORD timeoutMs = kTerminologyTimeoutMs)
      : pane_(std::move(pane)), output_(&output), timeoutMs_(timeoutMs) {}

  /// Asks the page and waits for its answer; a cancelled run is not waited for. Worker thread: the answer
  /// comes through the UI thread.
  [[nodiscard]] TerminologyAnswer Resolve(const TerminologyChoice& choice,
                                          const std::vector<std::wstring>& corpus, std::uint64_t runId,
                                          const RunFlags& flags);

  /// Hands the page's answer to the worker that waits for it; an unknown request id is ignored. UI thread.
  void Accept(const std::wstring& message);

  /// Wakes the worker of a run that has been cancelled. Any thread.
  void CancelRun(std::uint64_t runId) { pending_->CancelRun(runId); }

  /// What the page was asked and has not answered. Any thread.
  [[nodiscard]] std::vector<std::wstring> WaitingMessages() { return pending_->WaitingMessages(); }

 private:
  std::shared_ptr<PaneContext> pane_;
  PanelOutput* output_;
  DWORD timeoutMs_;
  std::shared_ptr<PendingTable<TerminologyAnswer>> pending_ =
      std::make_shared<PendingTable<TerminologyAnswer>>();
  /// Goes on from run to run, so that a late answer never fits a newer question.
  std::atomic<std::uint32_t> sequence_{0};
};

}  // namespace qv
