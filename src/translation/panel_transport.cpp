#include "translation/panel_transport.h"

#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/page_question.h"
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
  const PageQuestion question{requestId, request.runId, TranslateBatchRequestMessage(requestId, request),
                              timeoutMs_};
  const auto posted = [&] {
    TraceTranslateEvent("cpp.bridge.request.posted", BridgePostedDetail(request, requestId));
  };
  if (const auto answer = AskPage(question, pending_, *pane_, *output_, flags_, posted)) return *answer;
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
