#include "translation/quick_translate_worker.h"

#include <string>

#include "foundation/access_tokens.h"
#include "foundation/guard.h"
#include "foundation/host_session.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "foundation/patient_post.h"
#include "foundation/worker_thread.h"
#include "translation/http_transport.h"
#include "translation/quick_translate.h"
#include "translation/run_flags.h"

namespace qv {
namespace {

/// What one worker owns.
struct Job {
  std::shared_ptr<PaneContext> pane;
  PanelOutput* output;
  QuickTranslateRequest request;
  ServiceAccess access;
};

void Answer(PanelOutput& output, std::wstring_view requestId, const QuickTranslateAnswer& answer) {
  output.RunPanelScript(QuickTranslateScript(requestId, answer));
  PaneLog(QuickEndLine(requestId, answer));
}

void Work(const Job& job) {
  // Nobody pauses or cancels a single text.
  const RunFlags flags;
  TranslateResult result = TranslateResult::Failure(L"internal_error", L"Translation worker failed");
  Guard(L"QuickTranslate",
        [&] { result = HttpTransport(job.access, flags).Send(BuildQuickRequest(job.request)); });
  const auto answer = [output = job.output, id = job.request.requestId, told = QuickAnswerOf(result)] {
    Answer(*output, id, told);
  };
  // Refused when the pane has closed: nobody waits for the answer any more.
  static_cast<void>(PostPatiently(*job.pane, answer));
}

}  // namespace

void QuickTranslator::Translate(std::wstring_view message) {
  const auto job = std::make_shared<Job>(Job{context_, &output_, ParseQuickTranslate(message), {}});
  const QuickTranslateRequest& request = job->request;
  const std::wstring& held = NativeAccessToken::Get();
  PaneLog(QuickBeginLine(request, held.size()));
  job->access = {HostSession::Get().Endpoint(), request.token.empty() ? held : request.token,
                 BuildClientContext(GatherClientFacts())};
  if (StartDetachedWorker(L"QuickTranslate", [job] { Work(*job); })) return;
  Answer(output_, request.requestId, {false, {}, L"CreateThread failed"});
}

}  // namespace qv
