#include "translation/panel_transport.h"

#include <utility>

#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/run_messages.h"
#include "translation/trace_details.h"

namespace qv {

TranslateResult PanelTransport::Send(const TranslateRequest& request) {
  if (!flags_.Pass()) return TranslateResult::Cancelled();
  const std::wstring requestId = Concat(L"tr-", request.runId, L"-", ++sequence_);
  const TranslateResult result = Exchange(request, requestId);
  TraceTranslateEvent("cpp.bridge.worker.unblocked", BridgeUnblockedDetail(requestId, request.runId, result));
  if (result.ok && result.translations.size() != request.texts.size()) {
    return TranslateResult::Failure(L"", L"Translation count mismatch");
  }
  return result;
}

TranslateResult PanelTransport::Exchange(const TranslateRequest& request, const std::wstring& requestId) {
  const std::wstring message = TranslateBatchRequestMessage(requestId, request);
  const std::shared_ptr<PendingRequest> waiting = pending_->Register(requestId, request.runId, message);
  if (waiting == nullptr) return TranslateResult::Failure(L"internal_error", L"CreateEvent failed");
  // The page is reached from the UI thread only; a closed queue means that there is no page any more.
  const bool posted = pane_->Tasks().PostFunction([output = output_, pending = pending_, requestId, message] {
    // The run may have been cancelled while this waited, and the page been told so.
    if (pending->Has(requestId)) output->PostPanelJson(message);
  });
  // A cancel that came before the registration has not found this request.
  if (!posted || flags_.IsCancelled()) {
    pending_->Remove(requestId);
    return TranslateResult::Cancelled();
  }
  TraceTranslateEvent("cpp.bridge.request.posted", BridgePostedDetail(request, requestId));
  if (WaitForSingleObject(waiting->answered.Get(), timeoutMs_) == WAIT_OBJECT_0) return waiting->result;
  pending_->Remove(requestId);
  // The answer may have come in the last moment before the removal.
  if (WaitForSingleObject(waiting->answered.Get(), 0) == WAIT_OBJECT_0) return waiting->result;
  TraceTranslateEvent("cpp.bridge.timeout", BridgeTimeoutDetail(requestId, request.runId));
  return TranslateResult::Failure(L"request_timeout", L"Translation request timed out");
}

void AcceptBatchResult(PendingRequests& pending, const std::wstring& message) {
  const std::wstring requestId = JsonGetString(message, L"requestId");
  const TranslateResult result = ParseTranslateBatchResult(message);
  if (!pending.Complete(requestId, result)) return;
  TraceTranslateEvent("cpp.bridge.result.received", BridgeResultDetail(requestId, result));
}

}  // namespace qv
