#include "httpapi/wire/request_head.h"

#include <algorithm>

namespace qv::devhost {
namespace {

// HTTP_HEADER_ID, http.h.
constexpr std::size_t kConnection = 1;
constexpr std::size_t kTransferEncoding = 6;
constexpr std::size_t kContentLength = 11;
constexpr std::size_t kCookie = 25;
constexpr std::size_t kExpect = 26;
constexpr std::size_t kHost = 28;

constexpr int kBadRequest = 400;
constexpr int kLengthRequired = 411;
constexpr int kNotImplemented = 501;
constexpr int kVersionNotSupported = 505;
constexpr std::size_t kLongestMethod = 255;

/// Zero when all is well, else the status of the refusal.
using Status = int;

bool IsTokenCharacter(char c) {
  constexpr std::string_view kOthers = "!#$%&'*+-.^_`|~";
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         kOthers.find(c) != std::string_view::npos;
}

bool IsToken(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsTokenCharacter);
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string_view TrimBlanks(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && isBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

/// Takes the text up to the separator, and the separator, off the front; all of it when there is none.
std::string_view TakeUntil(std::string_view& text, std::string_view separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(text.size(), end + separator.size()));
  return part;
}

/// Whether a comma-separated value names the word.
bool ListHas(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    if (SameName(TrimBlanks(TakeUntil(list, ",")), word)) return true;
  }
  return false;
}

Status ParseVersion(std::string_view text, RequestHead& head) {
  if (text.size() != 8 || !text.starts_with("HTTP/") || text[6] != '.') return kBadRequest;
  if (text[5] != '1') return kVersionNotSupported;
  if (text[7] != '0' && text[7] != '1') return kVersionNotSupported;
  head.minorVersion = text[7] - '0';
  return 0;
}

Status ParseRequestLine(std::string_view line, RequestHead& head) {
  const std::string_view method = TakeUntil(line, " ");
  const std::string_view target = TakeUntil(line, " ");
  if (!IsToken(method) || method.size() > kLongestMethod) return kBadRequest;
  const bool isAddress = target.starts_with("http://") || target.starts_with("https://");
  if (!target.starts_with('/') && !isAddress && target != "*") return kBadRequest;
  if (target.size() > kLongestHeaderValue || std::any_of(target.begin(), target.end(), IsControl))
    return kBadRequest;
  head.verb = VerbNumber(method);
  head.method = method;
  head.rawUrl = target;
  return ParseVersion(line, head);
}

Status AddKnown(RequestHead& head, std::size_t id, std::string_view value) {
  std::string& slot = head.known[id];
  if (!slot.empty()) {
    if (id == kHost) return kBadRequest;
    if (id == kContentLength) return slot == value ? 0 : kBadRequest;
    slot += id == kCookie ? "; " : ", ";
  }
  slot += value;
  return slot.size() <= kLongestHeaderValue ? 0 : kBadRequest;
}

Status ParseHeaderLine(std::string_view line, RequestHead& head) {
  const std::size_t colon = line.find(':');
  // A line that begins with a blank would continue the one before; nobody needs that any more.
  if (colon == std::string_view::npos || !IsToken(line.substr(0, colon))) return kBadRequest;
  const std::string_view name = line.substr(0, colon);
  const std::string_view value = TrimBlanks(line.substr(colon + 1));
  if (std::max(name.size(), value.size()) > kLongestHeaderValue) return kBadRequest;
  if (std::any_of(value.begin(), value.end(), [](char c) { return IsControl(c) && c != '\t'; }))
    return kBadRequest;
  if (const auto id = RequestHeaderId(name)) return AddKnown(head, *id, value);
  head.unknown.emplace_back(name, value);
  return 0;
}

Status ParseLength(std::string_view text, std::uint64_t& length) {
  // 18 digits cannot overflow.
  if (text.empty() || text.size() > 18) return kBadRequest;
  length = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return kBadRequest;
    length = length * 10 + static_cast<std::uint64_t>(c - '0');
  }
  return 0;
}

Status DecideBody(RequestHead& head) {
  const std::string& length = head.known[kContentLength];
  const std::string& encoding = head.known[kTransferEncoding];
  if (!encoding.empty()) {
    // Two ways of telling the end invite two readings of where the next request begins.
    if (!length.empty() || head.minorVersion == 0) return kBadRequest;
    if (!SameName(encoding, "chunked")) return kNotImplemented;
    head.chunked = true;
    return 0;
  }
  if (!length.empty()) return ParseLength(length, head.contentLength);
  const bool wantsLength = head.method == "POST" || head.method == "PUT";
  return wantsLength ? kLengthRequired : 0;
}

Status Conclude(RequestHead& head) {
  if (head.minorVersion == 1 && head.known[kHost].empty()) return kBadRequest;
  const std::string& connection = head.known[kConnection];
  head.keepAlive = head.minorVersion == 1 ? !ListHas(connection, "close") : ListHas(connection, "keep-alive");
  head.expectsContinue = head.minorVersion == 1 && SameName(head.known[kExpect], "100-continue");
  return DecideBody(head);
}

Status ParseLines(std::string_view text, RequestHead& head) {
  if (const Status status = ParseRequestLine(TakeUntil(text, "\r\n"), head); status != 0) return status;
  while (!text.empty()) {
    if (const Status status = ParseHeaderLine(TakeUntil(text, "\r\n"), head); status != 0) return status;
  }
  return Conclude(head);
}

}  // namespace

HeadResult ParseRequestHead(std::string_view bytes, std::size_t limit, RequestHead& head) {
  using State = HeadResult::State;
  std::size_t begin = 0;
  while (bytes.substr(begin).starts_with("\r\n") && begin < limit)
    begin += 2;
  const std::size_t end = bytes.find("\r\n\r\n", begin);
  const std::size_t size = end == std::string_view::npos ? bytes.size() : end + 4;
  if (size > limit) return {State::Refused, 0, kBadRequest};
  if (end == std::string_view::npos) return {};
  head = {};
  const Status status = ParseLines(bytes.substr(begin, end - begin), head);
  if (status != 0) return {State::Refused, 0, status};
  return {State::Complete, size, 0};
}

}  // namespace qv::devhost
