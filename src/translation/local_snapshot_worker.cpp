#include "translation/local_snapshot_worker.h"

#include "foundation/guard.h"
#include "foundation/patient_post.h"
#include "foundation/worker_thread.h"
#include "translation/local_store.h"

namespace qv {
namespace {

/// Without data when the store could not be read.
std::wstring ReplyTo(const std::wstring& requestId) {
  std::wstring data;
  Guard(L"LocalSnapshot", [&data] { data = LocalSnapshotData(ReadLocalStore()); });
  return BuildReplyScript(requestId, !data.empty(), data);
}

}  // namespace

void AnswerWithLocalSnapshot(const std::shared_ptr<PaneContext>& pane, PanelOutput& output,
                             const std::wstring& requestId) {
  const auto work = [pane, page = &output, requestId] {
    const auto answer = [page, script = ReplyTo(requestId)] { page->RunPanelScript(script); };
    // Refused when the pane has closed: nobody waits for the answer any more.
    static_cast<void>(PostPatiently(*pane, answer));
  };
  if (StartDetachedWorker(L"LocalSnapshot", work)) return;
  output.RunPanelScript(BuildReplyScript(requestId, false, {}));
}

}  // namespace qv
