#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "translation/pending_requests.h"
#include "translation/run_flags.h"

namespace qv {

/// What a run's worker asks of the page.
struct PageQuestion {
  std::wstring requestId;
  std::uint64_t runId = 0;
  /// The JSON message that is posted.
  std::wstring message;
  DWORD timeoutMs = 0;
};

/// Posts the question and waits for its answer; nothing when the page was silent for the whole time. `posted`
/// is called before the wait. A cancelled run and a closed pane are not waited for. Worker thread; `output`
/// is used by tasks of the pane's queue only, which is closed before the output goes away.
template <typename Answer>
[[nodiscard]] std::optional<Answer> AskPage(const PageQuestion& question,
                                            const std::shared_ptr<PendingTable<Answer>>& pending,
                                            PaneContext& pane, PanelOutput& output, const RunFlags& flags,
                                            const std::function<void()>& posted) {
  const std::wstring& requestId = question.requestId;
  const auto waiting = pending->Register(requestId, question.runId, question.message);
  if (waiting == nullptr) return Answer::Failure(L"internal_error", L"CreateEvent failed");
  // The page is reached from the UI thread only; a closed queue means that there is no page any more.
  const bool accepted = pane.Tasks().PostFunction([page = &output, pending, requestId, waiting] {
    // The run may have been cancelled while this waited, and the page been told so.
    if (pending->Has(requestId)) page->PostPanelJson(waiting->message);
  });
  // A cancel that came before the registration has not found this request.
  if (!accepted || flags.IsCancelled()) {
    pending->Remove(requestId);
    return Answer::Cancelled();
  }
  posted();
  if (WaitForSingleObject(waiting->answered.Get(), question.timeoutMs) == WAIT_OBJECT_0)
    return waiting->result;
  pending->Remove(requestId);
  // The answer may have come in the last moment before the removal.
  if (WaitForSingleObject(waiting->answered.Get(), 0) == WAIT_OBJECT_0) return waiting->result;
  return std::nullopt;
}

}  // namespace qv
