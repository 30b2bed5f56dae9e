#include "httpapi/wire/response_head.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace qv::devhost {
namespace {

constexpr std::string_view kServer = "Microsoft-HTTPAPI/2.0";

const std::string* FindHeader(const ResponseHead& response, std::string_view name) {
  for (const auto& [key, value] : response.headers) {
    if (SameName(key, name)) return &value;
  }
  return nullptr;
}

bool HasNoBody(int status) {
  return status < 200 || status == 204 || status == 304;
}

void AddLine(std::string& out, std::string_view name, std::string_view value) {
  out.append(name).append(": ").append(value).append("\r\n");
}

std::string DateText(const HttpDate& date) {
  constexpr std::array kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr std::array kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%s, %02d %s %04d %02d:%02d:%02d GMT",
                kDays.at(static_cast<std::size_t>(date.weekday)), date.day,
                kMonths.at(static_cast<std::size_t>(date.month - 1)), date.year, date.hour, date.minute,
                date.second);
  return text.data();
}

std::string_view ReasonOf(int status) {
  struct Row {
    int status;
    std::string_view reason;
  };
  constexpr Row kRows[] = {{400, "Bad Request"},         {404, "Not Found"},
                           {411, "Length Required"},     {501, "Not Implemented"},
                           {503, "Service Unavailable"}, {505, "Version Not Supported"}};
  for (const Row& row : kRows) {
    if (row.status == status) return row.reason;
  }
  return "Error";
}

}  // namespace

ResponseFraming DecideFraming(const RequestHead& request, const ResponseHead& response,
                              std::optional<std::uint64_t> bodyBytes, bool disconnect) {
  ResponseFraming framing;
  const bool hasNoBody = HasNoBody(response.status);
  const std::string* const transferEncoding = FindHeader(response, "Transfer-Encoding");
  const std::string* const connection = FindHeader(response, "Connection");
  const bool framesItself = transferEncoding != nullptr || FindHeader(response, "Content-Length") != nullptr;
  framing.sendsBody = !hasNoBody && request.method != "HEAD";
  if (!hasNoBody && !framesItself) framing.contentLength = bodyBytes;
  const bool endsWithConnection = framing.sendsBody && !framesItself && !bodyBytes;
  framing.closes = disconnect || !request.keepAlive || endsWithConnection ||
                   (transferEncoding != nullptr && request.minorVersion == 0) ||
                   (connection != nullptr && SameName(*connection, "close"));
  return framing;
}

std::string WriteResponseHead(const ResponseHead& response, const ResponseFraming& framing,
                              const HttpDate& date) {
  std::string out = "HTTP/1.1 " + std::to_string(response.status) + " " + response.reason + "\r\n";
  for (const auto& [name, value] : response.headers)
    AddLine(out, name, value);
  if (FindHeader(response, "Server") == nullptr) AddLine(out, "Server", kServer);
  if (FindHeader(response, "Date") == nullptr) AddLine(out, "Date", DateText(date));
  if (framing.closes && FindHeader(response, "Connection") == nullptr) AddLine(out, "Connection", "close");
  if (framing.contentLength) AddLine(out, "Content-Length", std::to_string(*framing.contentLength));
  return out + "\r\n";
}

std::string WriteRefusal(int status, const HttpDate& date) {
  const std::string reason(ReasonOf(status));
  const std::string body = "<h2>" + reason + "</h2>\r\n";
  ResponseFraming framing;
  framing.closes = true;
  framing.contentLength = body.size();
  const ResponseHead head{status, reason, {{"Content-Type", "text/html; charset=us-ascii"}}};
  return WriteResponseHead(head, framing, date) + body;
}

}  // namespace qv::devhost
