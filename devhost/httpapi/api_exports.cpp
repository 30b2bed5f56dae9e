#include <winsock2.h>

#include <http.h>

#include <atomic>
#include <new>

#include "httpapi/limits.h"
#include "httpapi/queue_handles.h"

namespace qv::devhost {
namespace {

/// Calls of HttpInitialize that HttpTerminate has not made up for yet.
std::atomic<int> initialized{0};

/// Runs the call on the handle's queue; no exception reaches the application.
template <typename Body>
ULONG OnQueue(HANDLE handle, Body&& body) noexcept {
  if (initialized == 0) return ERROR_DLL_INIT_FAILED;
  try {
    const auto queue = QueueOf(handle);
    return queue ? body(*queue) : ERROR_INVALID_HANDLE;
  } catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
  } catch (...) {
    return ERROR_GEN_FAILURE;
  }
}

/// The same on a received request. Whoever passes OVERLAPPED wants what is not here.
template <typename Body>
ULONG OnExchange(HANDLE handle, HTTP_REQUEST_ID id, const OVERLAPPED* overlapped, Body&& body) noexcept {
  if (overlapped != nullptr) return ERROR_NOT_SUPPORTED;
  return OnQueue(handle, [&](RequestQueue& queue) -> ULONG {
    const auto exchange = queue.Find(id);
    if (!exchange) return ERROR_CONNECTION_INVALID;
    const ULONG result = body(*exchange);
    queue.ForgetAnswered(*exchange);
    return result;
  });
}

void Tell(ULONG* place, ULONG value) {
  if (place != nullptr) *place = value;
}

}  // namespace
}  // namespace qv::devhost

using namespace qv::devhost;

extern "C" {

ULONG WINAPI HttpInitialize(HTTPAPI_VERSION version, ULONG flags, PVOID reserved) {
  if (IsToldToFail(L"HttpInitialize")) return ERROR_NOT_ENOUGH_MEMORY;
  if (reserved != nullptr || flags == 0) return ERROR_INVALID_PARAMETER;
  if (version.HttpApiMajorVersion != 1 && version.HttpApiMajorVersion != 2) return ERROR_REVISION_MISMATCH;
  if (!StartWinsock()) return ERROR_DLL_INIT_FAILED;
  ++initialized;
  return NO_ERROR;
}

ULONG WINAPI HttpTerminate(ULONG, PVOID) {
  int count = initialized;
  while (count > 0 && !initialized.compare_exchange_weak(count, count - 1)) {
  }
  return count > 0 ? NO_ERROR : ERROR_DLL_INIT_FAILED;
}

ULONG WINAPI HttpCreateHttpHandle(PHANDLE queue, ULONG options) {
  if (queue == nullptr || options != 0) return ERROR_INVALID_PARAMETER;
  if (initialized == 0) return ERROR_DLL_INIT_FAILED;
  if (IsToldToFail(L"HttpCreateHttpHandle")) return ERROR_NOT_ENOUGH_MEMORY;
  try {
    *queue = OpenQueue();
  } catch (...) {
    *queue = nullptr;
  }
  return *queue == nullptr ? ERROR_NOT_ENOUGH_MEMORY : NO_ERROR;
}

ULONG WINAPI HttpAddUrl(HANDLE queue, PCWSTR url, PVOID) {
  if (url == nullptr) return ERROR_INVALID_PARAMETER;
  return OnQueue(queue, [&](RequestQueue& open) { return open.AddUrl(url); });
}

ULONG WINAPI HttpRemoveUrl(HANDLE queue, PCWSTR url) {
  if (url == nullptr) return ERROR_INVALID_PARAMETER;
  return OnQueue(queue, [&](RequestQueue& open) { return open.RemoveUrl(url); });
}

ULONG WINAPI HttpReceiveHttpRequest(HANDLE queue, HTTP_REQUEST_ID id, ULONG, PHTTP_REQUEST buffer, ULONG size,
                                    PULONG received, LPOVERLAPPED overlapped) {
  if (overlapped != nullptr) return ERROR_NOT_SUPPORTED;
  return OnQueue(queue, [&](RequestQueue& open) {
    ULONG needed = 0;
    const ULONG result = open.Receive(id, buffer, size, needed);
    Tell(received, needed);
    return result;
  });
}

ULONG WINAPI HttpReceiveRequestEntityBody(HANDLE queue, HTTP_REQUEST_ID id, ULONG, PVOID buffer, ULONG size,
                                          PULONG received, LPOVERLAPPED overlapped) {
  return OnExchange(queue, id, overlapped, [&](Exchange& exchange) {
    ULONG got = 0;
    const ULONG result = exchange.ReadBody(buffer, size, got);
    Tell(received, got);
    return result;
  });
}

ULONG WINAPI HttpSendHttpResponse(HANDLE queue, HTTP_REQUEST_ID id, ULONG flags, PHTTP_RESPONSE response,
                                  PVOID, PULONG sent, PVOID, ULONG, LPOVERLAPPED overlapped, PVOID) {
  if (response == nullptr) return ERROR_INVALID_PARAMETER;
  return OnExchange(queue, id, overlapped, [&](Exchange& exchange) {
    ULONG bytes = 0;
    const ULONG result = exchange.SendHead(*response, flags, bytes);
    Tell(sent, bytes);
    return result;
  });
}

ULONG WINAPI HttpSendResponseEntityBody(HANDLE queue, HTTP_REQUEST_ID id, ULONG flags, USHORT count,
                                        PHTTP_DATA_CHUNK chunks, PULONG sent, PVOID, ULONG,
                                        LPOVERLAPPED overlapped, PVOID) {
  if (count > 0 && chunks == nullptr) return ERROR_INVALID_PARAMETER;
  return OnExchange(queue, id, overlapped, [&](Exchange& exchange) {
    ULONG bytes = 0;
    const ULONG result = exchange.SendBody({chunks, count}, flags, bytes);
    Tell(sent, bytes);
    return result;
  });
}

ULONG WINAPI HttpCancelHttpRequest(HANDLE queue, HTTP_REQUEST_ID id, LPOVERLAPPED overlapped) {
  return OnExchange(queue, id, overlapped, [](Exchange& exchange) -> ULONG {
    exchange.Abort();
    return NO_ERROR;
  });
}

ULONG WINAPI HttpShutdownRequestQueue(HANDLE queue) {
  if (IsToldToFail(L"HttpShutdownRequestQueue")) return ERROR_INVALID_PARAMETER;
  return OnQueue(queue, [](RequestQueue& open) -> ULONG {
    open.ShutDown();
    return NO_ERROR;
  });
}

}  // extern "C"
