#include "foundation/worker_thread.h"

#include <windows.h>

#include <memory>
#include <utility>

#include "foundation/guard.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

struct ThreadStart {
  const wchar_t* where;
  std::function<void()> body;
  UniqueModule module;
};

/// Runs and destroys what the thread owns, all but its hold on the module.
HMODULE RunThread(std::unique_ptr<ThreadStart> start) noexcept {
  Guard(start->where, start->body);
  return start->module.Detach();
}

DWORD WINAPI ThreadMain(void* parameter) noexcept {
  const HMODULE module = RunThread(std::unique_ptr<ThreadStart>(static_cast<ThreadStart*>(parameter)));
  // Releasing the module and ending the thread must be one step: there may be no code to return to.
  FreeLibraryAndExitThread(module, 0);
}

/// Destroys what the thread would have owned; the system's code of what went wrong stays the last error.
bool GiveUp(std::unique_ptr<ThreadStart> start) {
  const DWORD error = GetLastError();
  start.reset();
  SetLastError(error);
  return false;
}

}  // namespace

bool StartDetachedWorker(const wchar_t* where, std::function<void()> body) {
  auto start = std::make_unique<ThreadStart>(ThreadStart{where, std::move(body), UniqueModule()});
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&ThreadMain),
                          start->module.Put())) {
    return GiveUp(std::move(start));
  }
  // Detached on purpose: whoever started it must be free to go before it ends.
  const UniqueKernelHandle thread(CreateThread(nullptr, 0, &ThreadMain, start.get(), 0, nullptr));
  if (!thread) return GiveUp(std::move(start));
  static_cast<void>(start.release());
  return true;
}

}  // namespace qv
