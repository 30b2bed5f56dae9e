#include "httpapi/queue_handles.h"

#include <map>
#include <system_error>
#include <thread>

#include "httpapi/last_catch.h"

namespace qv::devhost {
namespace {

std::mutex queuesMutex;
std::map<HANDLE, std::shared_ptr<RequestQueue>> queues;

void Forget(HANDLE handle, const std::shared_ptr<RequestQueue>& queue) {
  const std::scoped_lock lock(queuesMutex);
  const auto found = queues.find(handle);
  // The number may belong to a newer queue already.
  if (found != queues.end() && found->second == queue) queues.erase(found);
}

void Watch(const UniqueFile& end, HANDLE handle, const std::shared_ptr<RequestQueue>& queue) {
  char byte = 0;
  DWORD read = 0;
  while (ReadFile(end.Get(), &byte, 1, &read, nullptr) != FALSE) {
  }
  Contain([&] { queue->Close(); });
  Forget(handle, queue);
}

/// Keeps the library in memory: its threads end some time after the last handle.
void PinThisLibrary() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&PinThisLibrary), &module);
}

}  // namespace

HANDLE OpenQueue() {
  PinThisLibrary();
  HANDLE ours = nullptr;
  HANDLE theirs = nullptr;
  if (CreatePipe(&ours, &theirs, nullptr, 0) == FALSE) return nullptr;
  UniqueFile end(ours);
  const auto queue = std::make_shared<RequestQueue>();
  {
    const std::scoped_lock lock(queuesMutex);
    queues[theirs] = queue;
  }
  try {
    std::thread([end = std::move(end), theirs, queue] { Watch(end, theirs, queue); }).detach();
  } catch (const std::system_error&) {
    Forget(theirs, queue);
    CloseHandle(theirs);
    return nullptr;
  }
  return theirs;
}

std::shared_ptr<RequestQueue> QueueOf(HANDLE handle) {
  const std::scoped_lock lock(queuesMutex);
  const auto found = queues.find(handle);
  return found == queues.end() ? nullptr : found->second;
}

}  // namespace qv::devhost
