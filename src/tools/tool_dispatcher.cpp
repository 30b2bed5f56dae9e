#include "tools/tool_dispatcher.h"

#include <comdef.h>

#include <new>
#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/dispatch_state.h"
#include "tools/tool_result.h"

namespace qv {
namespace {

constexpr std::wstring_view kNoEventText = L"内部错误：事件创建失败";
constexpr std::wstring_view kExceptionText = L"未知异常";

std::wstring ComErrorResult(std::wstring_view path, std::wstring_view action, HRESULT hr) {
  PaneLog(Concat(path, L" _com_error action=", action, L" hr=0x", Hex8(hr), L"\r\n"));
  return ErrorResult(kComErrorText);
}

}  // namespace

std::wstring RunCaught(std::wstring_view path, const ToolRunner& run, std::wstring_view action,
                       const std::wstring& json) {
  try {
    return run(action, json);
  } catch (const _com_error& error) {
    return ComErrorResult(path, action, error.Error());
  } catch (const std::bad_alloc&) {
    return ComErrorResult(path, action, E_OUTOFMEMORY);
  } catch (...) {
    PaneLog(Concat(path, L" unknown exception action=", action, L"\r\n"));
    return ErrorResult(kExceptionText);
  }
}

class ToolDispatcher::Waiting {
 public:
  Waiting(ToolDispatcher& dispatcher, DispatchState& state) : dispatcher_(dispatcher), state_(state) {
    const std::lock_guard lock(dispatcher_.mutex_);
    dispatcher_.waiting_.insert(&state_);
    if (dispatcher_.closed_) state_.Abandon();
  }
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;
  ~Waiting() {
    const std::lock_guard lock(dispatcher_.mutex_);
    dispatcher_.waiting_.erase(&state_);
  }

 private:
  ToolDispatcher& dispatcher_;
  DispatchState& state_;
};

std::wstring ToolDispatcher::DispatchSync(const std::wstring& action, const std::wstring& json,
                                          DWORD limitMs) {
  if (!connected_) return ErrorResult(kNotConnectedText);
  PaneLog(Concat(L"DispatchSync enter action=", action, L" jsonLen=", json.size(), L"\r\n"));
  const std::shared_ptr<DispatchState> state = DispatchState::Create();
  if (state == nullptr) {
    PaneLog(L"DispatchSync CreateEvent failed\r\n");
    return ErrorResult(kNoEventText);
  }
  const Waiting waiting(*this, *state);
  // A task that was refused never runs, so there is nothing to wait for.
  if (!PostCall(state, action, json)) state->Abandon();
  DWORD waited = state->Wait(limitMs);
  const std::optional<std::wstring> result = waited == WAIT_OBJECT_0 ? state->TakeResult() : std::nullopt;
  if (!result) {
    if (waited == WAIT_OBJECT_0) waited = WAIT_TIMEOUT;
    PaneLog(Concat(L"DispatchSync timeout/err action=", action, L" wr=", waited, L"\r\n"));
    return ErrorResult(kTimedOutText);
  }
  PaneLog(Concat(L"DispatchSync done action=", action, L" resultLen=", result->size(), L"\r\n"));
  return *result;
}

bool ToolDispatcher::PostCall(const std::shared_ptr<DispatchState>& state, const std::wstring& action,
                              const std::wstring& json) {
  // The pane's tasks are dropped before the pane, and with it what `run_` stands for, goes away.
  return pane_->Tasks().PostFunction([this, state, action, json] {
    turns_.Run([this, state, action, json] {
      if (pane_->IsClosing()) return;
      state->Complete(RunCaught(L"DispatchSync", run_, action, json));
    });
  });
}

void ToolDispatcher::WakeWaiters() {
  const std::lock_guard lock(mutex_);
  for (DispatchState* state : waiting_)
    state->Abandon();
}

void ToolDispatcher::Close() {
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }
  connected_ = false;
  turns_.Close();
  WakeWaiters();
}

}  // namespace qv
