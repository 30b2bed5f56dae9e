#include "translation/http_transport.h"

#include <windows.h>

#include "foundation/https_client.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/error_codes.h"
#include "translation/trace_details.h"

namespace qv {
namespace {

constexpr std::wstring_view kTranslatePath = L"/v1/translate";

}  // namespace

ServiceAnswer PostTranslateHttp(const ServiceAccess& access, std::wstring_view path, std::wstring_view body) {
  HttpRequest request;
  request.endpoint = access.endpoint;
  request.path = path;
  request.body = ToUtf8(body);
  request.headers = L"Content-Type: application/json\r\n";
  if (!access.token.empty()) request.headers += Concat(L"Authorization: Bearer ", access.token, L"\r\n");
  const HttpResponse response = SendHttp(request);
  // A body that did not arrive whole says nothing, and once there is a status it says more than the
  // transport.
  return {response.status, response.ok ? FromUtf8(response.body) : std::wstring(),
          response.status == 0 ? response.error : std::wstring()};
}

TranslateResult HttpTransport::Send(const TranslateRequest& request) {
  // Before the clock starts: a pause is no time of the service.
  if (!flags_.Pass()) return TranslateResult::Cancelled();
  const ULONGLONG begin = GetTickCount64();
  const ServiceAnswer answer =
      PostTranslateHttp(access_, kTranslatePath, BuildTranslateBody(request, access_.clientContext));
  const TranslateResult result = flags_.IsCancelled() ? TranslateResult::Cancelled()
                                                      : ParseTranslateResponse(answer, request.texts.size());
  const auto elapsed = static_cast<std::int64_t>(GetTickCount64() - begin);
  TraceTranslateEvent("cpp.http.translate", HttpTranslateDetail(request, elapsed, result));
  return result;
}

}  // namespace qv
