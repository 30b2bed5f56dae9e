#include "webview2/chromium/browser.h"

#include <map>

#include "engines/common/com_guard.h"
#include "webview2/chromium/gdi_plus.h"
#include "webview2/chromium/new_windows.h"
#include "webview2/this_library.h"

namespace qv::devhost {
namespace {

/// Far more than a loaded machine needs; a browser that has not answered by then will not.
constexpr DWORD kStartLimitMs = 20'000;
constexpr DWORD kPollMs = 5;

std::mutex browsersMutex;
std::map<BrowserOptions, std::weak_ptr<Browser>> browsers;

}  // namespace

std::shared_ptr<Browser> Browser::ForOptions(const BrowserOptions& options) {
  const std::scoped_lock lock(browsersMutex);
  auto& slot = browsers[options];
  auto browser = slot.lock();
  if (browser) {
    const std::scoped_lock phaseLock(browser->mutex_);
    if (browser->phase_ != Phase::kGone) return browser;
  }
  browser = std::make_shared<Browser>(options);
  slot = browser;
  return browser;
}

bool Browser::CrashAll() {
  const std::scoped_lock lock(browsersMutex);
  bool any = false;
  for (const auto& [options, slot] : browsers) {
    const auto browser = slot.lock();
    if (!browser || !browser->IsRunning()) continue;
    browser->Client().Tell("", "Browser.crash", nullptr);
    any = true;
  }
  return any;
}

Browser::Browser(const BrowserOptions& options) : keeper_(BrowserKeeper::ForOptions(options)) {
  PinThisLibrary();
  thread_ = std::thread([this] {
    static_cast<void>(GuardCom([this] {
      Run();
      return S_OK;
    }));
  });
}

Browser::~Browser() {
  stopping_ = true;
  {
    const std::scoped_lock lock(mutex_);
    if (client_) client_->Close();
  }
  // Also what makes a browser let go that does not answer any more.
  keeper_->Stop(number_);
  thread_.join();
}

void Browser::WhenReady(const CompletionQueue::Entrance& queue, Ready ready) {
  const std::scoped_lock lock(mutex_);
  if (phase_ == Phase::kStarting) {
    waiting_.emplace_back(queue, std::move(ready));
  } else {
    queue.Post([ready = std::move(ready), result = result_] { ready(result); });
  }
}

bool Browser::IsRunning() const {
  const std::scoped_lock lock(mutex_);
  return phase_ == Phase::kRunning;
}

void Browser::Run() {
  const GdiPlus pictures;
  const HRESULT result = Start();
  if (SUCCEEDED(result)) {
    Enter(Phase::kRunning, S_OK);
    client_->Run();
  }
  // Ahead of the news of the loss: whoever hears it may want a new browser at once.
  Enter(Phase::kGone, FAILED(result) ? result : kBrowserLost);
  if (client_) client_->Lose();
  keeper_->Stop(number_);
}

HRESULT Browser::Start() {
  number_ = keeper_->Start();
  if (number_ == 0) return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
  DevToolsAddress address{};
  const HRESULT result = AwaitAddress(address);
  if (FAILED(result)) return result;
  auto socket = DevToolsSocket::Connect(address);
  if (!socket) return E_FAIL;
  const std::scoped_lock lock(mutex_);
  client_ = std::make_unique<DevToolsClient>(std::move(socket));
  CloseNewWindows(*client_);
  if (stopping_) client_->Close();
  return S_OK;
}

HRESULT Browser::AwaitAddress(DevToolsAddress& address) const {
  const ULONGLONG deadline = GetTickCount64() + kStartLimitMs;
  while (!stopping_ && GetTickCount64() < deadline) {
    const auto progress = keeper_->Look(number_, address);
    if (progress == BrowserKeeper::Progress::kListening) return S_OK;
    // Most likely there is no such program.
    if (progress == BrowserKeeper::Progress::kEnded) return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    Sleep(kPollMs);
  }
  return HRESULT_FROM_WIN32(ERROR_TIMEOUT);
}

void Browser::Enter(Phase phase, HRESULT result) {
  const std::scoped_lock lock(mutex_);
  phase_ = phase;
  result_ = result;
  for (auto& [queue, ready] : std::exchange(waiting_, {}))
    queue.Post([ready = std::move(ready), result] { ready(result); });
}

}  // namespace qv::devhost
