#include "webview2/environment.h"

#include <combaseapi.h>

#include "engines/common/com_guard.h"
#include "webview2/chromium/chromium_source.h"
#include "webview2/controller.h"
#include "webview2/recorder.h"
#include "webview2/recorder_backend.h"
#include "webview2/task_text.h"

namespace qv::devhost {
namespace {

using ControllerHandler = ICoreWebView2CreateCoreWebView2ControllerCompletedHandler;
using EnvironmentHandler = ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler;

/// A controller on its way: completed once, either by the queue or by the loss of the parent window.
struct PendingController {
  std::unique_ptr<ViewWindow> window;
  ComPtr<ControllerHandler> handler;

  void Complete(HRESULT result, ICoreWebView2Controller* controller) {
    const ComPtr<ControllerHandler> receiver = std::move(handler);
    if (receiver) static_cast<void>(receiver->Invoke(result, controller));
  }
};

/// The real runtime lives in single-threaded apartments only.
HRESULT CheckApartment() {
  APTTYPE type = APTTYPE_CURRENT;
  APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
  const HRESULT hr = CoGetApartmentType(&type, &qualifier);
  if (FAILED(hr)) return hr;
  return type == APTTYPE_STA || type == APTTYPE_MAINSTA ? S_OK : RPC_E_CHANGED_MODE;
}

}  // namespace

Environment::Environment(std::shared_ptr<CompletionQueue> queue, std::unique_ptr<PageSource> pages,
                         std::wstring userDataFolder)
    : queue_(std::move(queue)), pages_(std::move(pages)), userDataFolder_(std::move(userDataFolder)) {}

HRESULT Environment::CreateCoreWebView2Controller(HWND parentWindow, ControllerHandler* handler) noexcept {
  return GuardCom([&]() -> HRESULT {
    if (!queue_->IsOwnThread()) return RPC_E_WRONG_THREAD;
    if (handler == nullptr) return E_POINTER;
    const auto failure = Recorder::Get().TakeFailure(CreationStep::kController);
    if (failure && failure->how == CreationFailure::kAtOnce) return failure->result;

    const auto pending = std::make_shared<PendingController>();
    pending->window = ViewWindow::Create(parentWindow);
    if (!pending->window) return HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE);
    pending->handler = handler;
    pending->window->OnDestroyed([weak = std::weak_ptr(pending)] {
      if (const auto lost = weak.lock()) lost->Complete(E_ABORT, nullptr);
    });
    return pages_->PreparePage([pending, failure, queue = queue_, parentWindow, folder = userDataFolder_](
                                   HRESULT result, const BindPage& bind) {
      if (!pending->handler) return;
      pending->window->OnDestroyed(nullptr);
      if (SUCCEEDED(result) && failure) return pending->Complete(failure->result, nullptr);
      if (FAILED(result)) return pending->Complete(result, nullptr);
      const auto controller =
          MakeCom<Controller>(queue, parentWindow, std::move(pending->window), bind, folder);
      pending->Complete(S_OK, controller.Get());
    });
  });
}

HRESULT Environment::CreateWebResourceResponse(IStream*, int, LPCWSTR, LPCWSTR,
                                               ICoreWebView2WebResourceResponse**) noexcept {
  return E_NOTIMPL;
}

HRESULT Environment::get_BrowserVersionString(LPWSTR* value) noexcept {
  return GuardCom([&] { return ReturnText(kBrowserVersion, value); });
}

HRESULT Environment::add_NewBrowserVersionAvailable(ICoreWebView2NewBrowserVersionAvailableEventHandler*,
                                                    EventRegistrationToken*) noexcept {
  return E_NOTIMPL;
}

HRESULT Environment::remove_NewBrowserVersionAvailable(EventRegistrationToken) noexcept {
  return E_NOTIMPL;
}

HRESULT CreateEnvironment(PCWSTR userDataFolder, EnvironmentHandler* handler) {
  if (handler == nullptr) return E_POINTER;
  const HRESULT apartment = CheckApartment();
  if (FAILED(apartment)) return apartment;
  const auto failure = Recorder::Get().TakeFailure(CreationStep::kEnvironment);
  if (failure && failure->how == CreationFailure::kAtOnce) return failure->result;

  const auto queue = CompletionQueue::ForThisThread();
  const std::wstring folder(userDataFolder ? userDataFolder : L"");
  const auto complete = [queue, folder, receiver = ComPtr<EnvironmentHandler>(handler)](
                            HRESULT result, std::unique_ptr<PageSource> pages) {
    ComPtr<Environment> environment;
    if (pages) environment = MakeCom<Environment>(queue, std::move(pages), folder);
    static_cast<void>(receiver->Invoke(result, environment.Get()));
  };
  const auto browser = WantedBrowser(folder);
  queue->Post(
      [queue, failure, browser, complete] {
        if (failure) return complete(failure->result, nullptr);
        if (browser) return ChromiumSource::Open(*browser, queue, complete);
        complete(S_OK, std::make_unique<RecorderSource>(queue));
      },
      Recorder::Get().Delay());
  return S_OK;
}

}  // namespace qv::devhost
