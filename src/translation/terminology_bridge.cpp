#include "translation/terminology_bridge.h"

#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/page_question.h"
#include "translation/trace_details.h"

namespace qv {

TerminologyAnswer TerminologyBridge::Resolve(const TerminologyChoice& choice,
                                             const std::vector<std::wstring>& corpus, std::uint64_t runId,
                                             const RunFlags& flags) {
  const std::wstring requestId = Concat(L"term-", ++sequence_);
  const PageQuestion question{requestId, runId, TerminologyResolveRequestMessage(requestId, choice, corpus),
                              timeoutMs_};
  const auto posted = [&] {
    TraceTranslateEvent("cpp.term.bridge.request.posted",
                        TermPostedDetail(requestId, choice.glossaryIds.size(), corpus.size()));
  };
  TerminologyAnswer answer =
      AskPage(question, pending_, *pane_, *output_, flags, posted).value_or(TerminologyAnswer::TimedOut());
  if (answer.ok) {
    TraceTranslateEvent("cpp.term.bridge.result.received", TermResultDetail(requestId, answer.result.size()));
  } else {
    TraceTranslateEvent("cpp.term.bridge.failed", TermFailedDetail(requestId, answer.ok, answer.code));
  }
  return answer;
}

void TerminologyBridge::Accept(const std::wstring& message) {
  // A second answer, or one that comes too late, finds nobody.
  static_cast<void>(
      pending_->Complete(JsonGetString(message, L"requestId"), ParseTerminologyAnswer(message)));
}

}  // namespace qv
