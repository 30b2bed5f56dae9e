#include <windows.h>

#include <atomic>
#include <utility>

#include "foundation/guard.h"
#include "foundation/host_session.h"
#include "foundation/https_client.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/worker_thread.h"

namespace qv {
namespace {

/// Keeps the code in memory for the rest of the process: the worker may outlive the add-in's connection.
bool PinModule() {
  HMODULE module = nullptr;
  return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                            reinterpret_cast<LPCWSTR>(&PinModule), &module) != FALSE;
}

void LogFailure(std::wstring_view detail) {
  PaneLog(Concat(L"PostAnalytics beacon failed: ",
                 detail.empty() ? std::wstring_view(L"(no detail)") : detail, L"\r\n"));
}

void SendAndReport(const HttpRequest& request) {
  const HttpResponse response = SendHttp(request);
  if (!response.ok) {
    LogFailure(response.error);
  } else if (response.status >= 400) {
    LogFailure(Concat(L"HTTP ", response.status));
  }
}

void PostAnalytics(const std::wstring& body) {
  // An event must never disturb the host, not even by the lack of a thread.
  Guard(L"PostAnalytics", [&] {
    if (!PinModule()) return LogFailure(L"module not pinned");
    HttpRequest request;
    request.endpoint = HostSession::Get().Endpoint();
    request.path = L"/v1/analytics/events";
    request.headers = L"Content-Type: application/json\r\n";
    request.body = ToUtf8(body);
    if (!StartDetachedWorker(L"PostAnalytics worker",
                             [request = std::move(request)] { SendAndReport(request); }))
      LogFailure(L"no thread");
  });
}

}  // namespace

void SendBeacon(std::wstring_view event, std::wstring_view source) {
  if (event.empty()) return;
  PostAnalytics(BuildBeaconBody(event, BuildClientContext(GatherClientFacts()), source));
}

void ReportWebViewInitFailure(std::wstring_view step, long hr) {
  static std::atomic<bool> reported{false};
  bool expected = false;
  if (!reported.compare_exchange_strong(expected, true)) return;
  PostAnalytics(
      BuildWebViewFailureBody(step, static_cast<std::int32_t>(hr), BuildClientContext(GatherClientFacts())));
}

}  // namespace qv
