#include "webview2/recorder_backend.h"

#include "webview2/recorder.h"

namespace qv::devhost {

RecorderBackend::RecorderBackend(PageEvents& events, std::shared_ptr<CompletionQueue> queue)
    : events_(events), queue_(std::move(queue)) {}

void RecorderBackend::Navigate(std::uint64_t navigation, const std::wstring& uri) {
  const auto failure = Recorder::Get().TakeNavigationFailure();
  queue_->Post(
      [this, alive = std::weak_ptr<int>(alive_), navigation, uri, failure] {
        if (alive.expired()) return;
        events_.SourceChanged(uri);
        events_.NavigationFinished(navigation, !failure,
                                   failure.value_or(COREWEBVIEW2_WEB_ERROR_STATUS_UNKNOWN));
      },
      Recorder::Get().Delay());
}

void RecorderBackend::ExecuteScript(const std::wstring& script, ScriptDone done) {
  queue_->Post(
      [alive = std::weak_ptr<int>(alive_), answer = Recorder::Get().ResultOf(script),
       done = std::move(done)] {
        if (!alive.expired()) done(answer.result, answer.json);
      },
      Recorder::Get().Delay());
}

bool RecorderBackend::CrashPage() {
  queue_->Post([this, alive = std::weak_ptr<int>(alive_)] {
    if (!alive.expired()) events_.PageProcessLost();
  });
  return true;
}

void RecorderBackend::CrashBrowser() {
  queue_->Post([this, alive = std::weak_ptr<int>(alive_)] {
    if (!alive.expired()) events_.BrowserProcessLost();
  });
}

HRESULT RecorderSource::PreparePage(PageReady ready) {
  queue_->Post(
      [queue = queue_, ready = std::move(ready)] {
        ready(S_OK, [queue](PageEvents& events, ViewWindow&) {
          return std::make_shared<RecorderBackend>(events, queue);
        });
      },
      Recorder::Get().Delay());
  return S_OK;
}

}  // namespace qv::devhost
