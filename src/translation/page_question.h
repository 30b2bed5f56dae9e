#pragma once

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "foundation/patient_post.h"
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

/// Posts the question and waits for its answer; nothing when the page was silent for the whole time, in which
/// a full message queue counts. `posted` is called before the wait for the answer. A cancelled run and a
/// closed pane are not waited for. Worker thread; `output` is used by tasks of the pane's queue only, which
/// is closed before the output goes away.
template <typename Answer>
[[nodiscard]] std::optional<Answer> AskPage(const PageQuestion& question,
                                            const std::shared_ptr<PendingTable<Answer>>& pending,
                                            PaneContext& pane, PanelOutput& output, const RunFlags& flags,
                                            const std::function<void()>& posted) {
  const std::wstring& requestId = question.requestId;
  const auto waiting = pending->Register(requestId, question.runId, question.message);
  if (waiting == nullptr) return Answer::Failure(L"internal_error", L"CreateEvent failed");
  const std::uint64_t startTick = GetTickCount64();
  // The page is reached from the UI thread only.
  const auto ask = [page = &output, pending, requestId, waiting] {
    // The run may have been cancelled while this waited, and the page been told so.
    if (pending->Has(requestId)) page->PostPanelJson(waiting->message);
  };
  const bool accepted = PostPatiently(pane, ask, std::chrono::milliseconds(question.timeoutMs),
                                      [&flags] { return !flags.IsCancelled(); });
  // A cancel that came before the registration has not found this request.
  if (flags.IsCancelled() || pane.IsClosing()) {
    pending->Remove(requestId);
    return Answer::Cancelled();
  }
  if (accepted) {
    posted();
    const std::uint64_t spent = std::min<std::uint64_t>(GetTickCount64() - startTick, question.timeoutMs);
    const DWORD left = question.timeoutMs - static_cast<DWORD>(spent);
    if (WaitForSingleObject(waiting->answered.Get(), left) == WAIT_OBJECT_0) return waiting->result;
  }
  pending->Remove(requestId);
  // The answer may have come in the last moment before the removal.
  if (WaitForSingleObject(waiting->answered.Get(), 0) == WAIT_OBJECT_0) return waiting->result;
  return std::nullopt;
}

}  // namespace qv
