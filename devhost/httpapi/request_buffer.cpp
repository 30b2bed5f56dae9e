#include "httpapi/request_buffer.h"

#include <cstring>
#include <string>
#include <string_view>

#include "httpapi/wire/url_prefix.h"

namespace qv::devhost {
namespace {

constexpr std::size_t kHostHeader = HttpHeaderHost;
static_assert(kRequestHeaders == HttpHeaderRequestMaximum && kResponseHeaders == HttpHeaderResponseMaximum);

/// Places things one after the other behind the structure. Without a target it only counts.
class Placement {
 public:
  Placement(void* target, std::size_t used) : target_(static_cast<std::byte*>(target)), used_(used) {}

  [[nodiscard]] std::size_t Used() const { return used_; }

  /// Room for `count` values, or null while only counting.
  template <typename T>
  T* Take(std::size_t count) {
    used_ = (used_ + alignof(T) - 1) / alignof(T) * alignof(T);
    T* const place = target_ == nullptr ? nullptr : reinterpret_cast<T*>(target_ + used_);
    used_ += count * sizeof(T);
    return place;
  }

  /// The text with a closing zero, which its length does not count.
  template <typename Char>
  const Char* Put(std::basic_string_view<Char> text) {
    Char* const place = Take<Char>(text.size() + 1);
    if (place == nullptr) return nullptr;
    text.copy(place, text.size());
    place[text.size()] = Char{};
    return place;
  }

  SOCKADDR* Put(const sockaddr_in& address) {
    auto* const place = Take<sockaddr_in>(1);
    if (place != nullptr) *place = address;
    return reinterpret_cast<SOCKADDR*>(place);
  }

 private:
  std::byte* target_;
  std::size_t used_;
};

USHORT Length(std::size_t size) {
  return static_cast<USHORT>(size);
}

USHORT Bytes(std::wstring_view text) {
  return static_cast<USHORT>(text.size() * sizeof(wchar_t));
}

void PutHeaders(const RequestHead& head, Placement& place, HTTP_REQUEST_HEADERS& headers) {
  headers.UnknownHeaderCount = Length(head.unknown.size());
  headers.pUnknownHeaders = place.Take<HTTP_UNKNOWN_HEADER>(head.unknown.size());
  for (std::size_t i = 0; i < head.unknown.size(); ++i) {
    const auto& [name, value] = head.unknown[i];
    const char* const namePlace = place.Put<char>(name);
    const char* const valuePlace = place.Put<char>(value);
    if (headers.pUnknownHeaders == nullptr) continue;
    headers.pUnknownHeaders[i] = {Length(name.size()), Length(value.size()), namePlace, valuePlace};
  }
  if (head.unknown.empty()) headers.pUnknownHeaders = nullptr;
  for (std::size_t id = 0; id < kRequestHeaders; ++id) {
    if (head.known[id].empty()) continue;
    headers.KnownHeaders[id] = {Length(head.known[id].size()), place.Put<char>(head.known[id])};
  }
}

void PutUrl(const RequestHead& head, Placement& place, HTTP_REQUEST& request) {
  request.RawUrlLength = Length(head.rawUrl.size());
  request.pRawUrl = place.Put<char>(head.rawUrl);
  const CookedUrl cooked = CookUrl(head.rawUrl, head.known[kHostHeader]);
  HTTP_COOKED_URL& url = request.CookedUrl;
  url.FullUrlLength = Bytes(cooked.full);
  url.HostLength = Bytes(cooked.host);
  url.AbsPathLength = Bytes(cooked.path);
  url.QueryStringLength = Bytes(cooked.query);
  url.pFullUrl = place.Put<wchar_t>(cooked.full);
  if (url.pFullUrl == nullptr) return;
  // The parts point into the whole.
  url.pQueryString =
      cooked.query.empty() ? nullptr : url.pFullUrl + (cooked.full.size() - cooked.query.size());
  url.pAbsPath = url.pFullUrl + (cooked.full.size() - cooked.query.size() - cooked.path.size());
  url.pHost = url.pAbsPath - cooked.host.size();
}

/// Fills the structure; pointers are null while only counting.
std::size_t Put(const Exchange& exchange, HTTP_REQUEST& request, void* buffer) {
  const RequestHead& head = exchange.Head();
  Placement place(buffer, sizeof(HTTP_REQUEST));
  request = {};
  request.ConnectionId = exchange.Id();
  request.RequestId = exchange.Id();
  request.Version = {1, static_cast<USHORT>(head.minorVersion)};
  request.Verb = static_cast<HTTP_VERB>(head.verb);
  PutHeaders(head, place, request.Headers);
  PutUrl(head, place, request);
  if (head.verb == kUnknownVerb) {
    request.UnknownVerbLength = Length(head.method.size());
    request.pUnknownVerb = place.Put<char>(head.method);
  }
  request.Address.pRemoteAddress = place.Put(exchange.Client().Peer());
  request.Address.pLocalAddress = place.Put(exchange.Client().Own());
  if (exchange.HasMoreBody()) request.Flags = HTTP_REQUEST_FLAG_MORE_ENTITY_BODY_EXISTS;
  return place.Used();
}

}  // namespace

ULONG DescribeRequest(const Exchange& exchange, HTTP_REQUEST* buffer, ULONG size, ULONG& needed) {
  HTTP_REQUEST counted{};
  needed = static_cast<ULONG>(Put(exchange, counted, nullptr));
  if (needed > size) {
    *buffer = {};
    buffer->ConnectionId = exchange.Id();
    buffer->RequestId = exchange.Id();
    return ERROR_MORE_DATA;
  }
  static_cast<void>(Put(exchange, *buffer, buffer));
  return NO_ERROR;
}

}  // namespace qv::devhost
