#include "webview2/chromium/pinned_thread.h"

#include <windows.h>

#include <memory>
#include <stdexcept>

#include "engines/common/com_guard.h"
#include "webview2/this_library.h"

namespace qv::devhost {
namespace {

struct Start {
  HMODULE library = nullptr;
  std::function<void()> body;
};

DWORD WINAPI Run(void* parameter) noexcept {
  HMODULE library = nullptr;
  {
    const std::unique_ptr<Start> start(static_cast<Start*>(parameter));
    library = start->library;
    static_cast<void>(GuardCom([&] {
      start->body();
      return S_OK;
    }));
  }
  FreeLibraryAndExitThread(library, 0);
}

}  // namespace

PinnedThread::PinnedThread(std::function<void()> body) {
  auto start = std::make_unique<Start>();
  start->body = std::move(body);
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&Run),
                     &start->library);
  thread_.Reset(CreateThread(nullptr, 0, Run, start.get(), 0, nullptr));
  if (!thread_) {
    FreeLibrary(start->library);
    throw std::runtime_error("no thread for the browser");
  }
  static_cast<void>(start.release());
}

PinnedThread::~PinnedThread() {
  WaitForSingleObject(thread_.Get(), INFINITE);
}

}  // namespace qv::devhost
