#include "foundation/https_client.h"

#include <windows.h>

#include <winhttp.h>

#include <algorithm>
#include <cwchar>
#include <limits>
#include <optional>
#include <vector>

#include "foundation/unique_handle.h"

namespace qv {
namespace {

struct InternetTraits {
  using Type = HINTERNET;
  static Type None() { return nullptr; }
  static void Close(Type handle) { WinHttpCloseHandle(handle); }
};
using UniqueInternet = UniqueHandle<InternetTraits>;

constexpr DWORD kPieceBytes = 16 * 1024;

/// The three handles of one request; a later one must go before an earlier one.
struct Exchange {
  UniqueInternet session;
  UniqueInternet connection;
  UniqueInternet request;
};

bool SetNumber(const UniqueInternet& handle, DWORD option, DWORD value) {
  return WinHttpSetOption(handle.Get(), option, &value, sizeof(value)) != FALSE;
}

/// WinHTTP's own defaults:
/// https://learn.microsoft.com/windows/win32/api/winhttp/nf-winhttp-winhttpsettimeouts
constexpr HttpTimeouts kDefaultTimeouts = {0, 60'000, 30'000, 30'000};

void SetTimeouts(const UniqueInternet& session, const HttpTimeouts& timeouts) {
  if (timeouts == HttpTimeouts()) return;
  const auto chosen = [&](int HttpTimeouts::*step) {
    return timeouts.*step > 0 ? timeouts.*step : kDefaultTimeouts.*step;
  };
  WinHttpSetTimeouts(session.Get(), chosen(&HttpTimeouts::resolve), chosen(&HttpTimeouts::connect),
                     chosen(&HttpTimeouts::send), chosen(&HttpTimeouts::receive));
  // The wait for the answer's head has a limit of its own.
  if (timeouts.receive > 0)
    SetNumber(session, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, static_cast<DWORD>(timeouts.receive));
}

/// Null, or the text of what failed.
const wchar_t* OpenExchange(const HttpRequest& request, Exchange& exchange) {
  exchange.session.Reset(WinHttpOpen(request.userAgent.c_str(), WINHTTP_ACCESS_TYPE_NO_PROXY,
                                     WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0));
  if (!exchange.session) return L"WinHttpOpen failed";
  SetTimeouts(exchange.session, request.timeouts);

  exchange.connection.Reset(
      WinHttpConnect(exchange.session.Get(), request.endpoint.host.c_str(), request.endpoint.port, 0));
  if (!exchange.connection) return L"WinHttpConnect failed";

  exchange.request.Reset(WinHttpOpenRequest(
      exchange.connection.Get(), request.verb.c_str(), request.path.c_str(), nullptr, WINHTTP_NO_REFERER,
      WINHTTP_DEFAULT_ACCEPT_TYPES, request.endpoint.secure ? WINHTTP_FLAG_SECURE : 0));
  if (!exchange.request) return L"WinHttpOpenRequest failed";
  // A kept connection that the server has closed meanwhile fails the next request, which cannot safely be
  // sent twice. A redirection could carry the bearer token to another host.
  const DWORD redirects = request.followRedirects ? 0 : WINHTTP_DISABLE_REDIRECTS;
  if (!SetNumber(exchange.request, WINHTTP_OPTION_DISABLE_FEATURE, WINHTTP_DISABLE_KEEP_ALIVE | redirects)) {
    return L"WinHttpOpenRequest failed";
  }
  return nullptr;
}

/// Longer bodies would need a request in pieces; only what is meant for another machine's disk is that long.
bool FitsOneSend(const std::string& body) {
  return body.size() <= std::numeric_limits<DWORD>::max();
}

bool SendAndReceiveHead(const HttpRequest& request, const UniqueInternet& handle) {
  const auto bodyBytes = static_cast<DWORD>(request.body.size());
  // The function only reads the body, though its declaration lacks the const.
  void* const body = bodyBytes == 0 ? WINHTTP_NO_REQUEST_DATA : const_cast<char*>(request.body.data());
  const wchar_t* const headers =
      request.headers.empty() ? WINHTTP_NO_ADDITIONAL_HEADERS : request.headers.c_str();
  return WinHttpSendRequest(handle.Get(), headers, static_cast<DWORD>(request.headers.size()), body,
                            bodyBytes, bodyBytes, 0) &&
         WinHttpReceiveResponse(handle.Get(), nullptr);
}

/// 0 for an answer that reports none.
int QueryStatus(const UniqueInternet& handle) {
  DWORD status = 0;
  DWORD size = sizeof(status);
  if (!WinHttpQueryHeaders(handle.Get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                           WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX)) {
    return 0;
  }
  return static_cast<int>(status);
}

/// The announced length of the body, if there is one.
std::optional<std::uint64_t> QueryLength(const UniqueInternet& handle) {
  wchar_t text[32] = {};
  DWORD size = sizeof(text) - sizeof(wchar_t);
  if (!WinHttpQueryHeaders(handle.Get(), WINHTTP_QUERY_CONTENT_LENGTH, WINHTTP_HEADER_NAME_BY_INDEX, text,
                           &size, WINHTTP_NO_HEADER_INDEX)) {
    return std::nullopt;
  }
  return std::wcstoull(text, nullptr, 10);
}

std::wstring QueryContentType(const UniqueInternet& handle) {
  wchar_t text[256] = {};
  DWORD size = sizeof(text);
  if (!WinHttpQueryHeaders(handle.Get(), WINHTTP_QUERY_CONTENT_TYPE, WINHTTP_HEADER_NAME_BY_INDEX, text,
                           &size, WINHTTP_NO_HEADER_INDEX)) {
    return {};
  }
  return text;
}

/// The system's code of a call that failed; never success.
DWORD LastFailure() {
  const DWORD error = GetLastError();
  return error == ERROR_SUCCESS ? ERROR_WINHTTP_CONNECTION_ERROR : error;
}

/// Reads the body to its end: ERROR_SUCCESS, or why the connection, the announced length or the sink say no.
DWORD ReadBody(const UniqueInternet& handle, std::optional<std::uint64_t> announced,
               const std::function<bool(std::string_view)>& take) {
  std::vector<char> piece(kPieceBytes);
  std::uint64_t total = 0;
  for (;;) {
    // Asking first: a plain read waits until its buffer is full.
    DWORD available = 0;
    if (!WinHttpQueryDataAvailable(handle.Get(), &available)) return LastFailure();
    if (available == 0) break;
    DWORD read = 0;
    if (!WinHttpReadData(handle.Get(), piece.data(), std::min(available, kPieceBytes), &read))
      return LastFailure();
    if (read == 0) return ERROR_WINHTTP_CONNECTION_ERROR;
    total += read;
    if (!take({piece.data(), read})) return ERROR_CANCELLED;
  }
  return announced && total < *announced ? ERROR_WINHTTP_CONNECTION_ERROR : ERROR_SUCCESS;
}

}  // namespace

HttpResponse SendHttp(const HttpRequest& request, const HttpByteSink& sink, const HttpHeadSink& headSink) {
  HttpResponse response;
  if (!FitsOneSend(request.body)) {
    response.systemError = ERROR_FILE_TOO_LARGE;
    response.error = L"HTTP request failed";
    return response;
  }
  Exchange exchange;
  if (const wchar_t* const failure = OpenExchange(request, exchange); failure != nullptr) {
    response.systemError = LastFailure();
    response.error = failure;
    return response;
  }

  const UniqueInternet& handle = exchange.request;
  response.error = L"HTTP request failed";
  if (!SendAndReceiveHead(request, handle)) {
    response.systemError = LastFailure();
    return response;
  }
  response.status = QueryStatus(handle);
  response.contentType = QueryContentType(handle);
  if (headSink && !headSink(response)) {
    response.systemError = ERROR_CANCELLED;
    return response;
  }

  const auto take = [&](std::string_view bytes) {
    if (sink) return sink(response.status, bytes);
    response.body += bytes;
    return true;
  };
  // The answer to HEAD announces a body that does not follow.
  const auto announced = request.verb == L"HEAD" ? std::nullopt : QueryLength(handle);
  response.systemError = request.headOnly ? ERROR_SUCCESS : ReadBody(handle, announced, take);
  if (response.systemError != ERROR_SUCCESS) {
    response.body.clear();
    return response;
  }
  response.ok = true;
  response.error.clear();
  return response;
}

}  // namespace qv
