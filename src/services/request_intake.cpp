#include "services/request_intake.h"

#include <algorithm>

namespace qv {
namespace {

constexpr std::size_t kBufferBytes = 64 * 1024;

std::string_view Text(const char* text, std::size_t length) {
  return text == nullptr ? std::string_view() : std::string_view(text, length);
}

std::string_view Known(const HTTP_REQUEST& request, HTTP_HEADER_ID id) {
  const HTTP_KNOWN_HEADER& header = request.Headers.KnownHeaders[id];
  return Text(header.pRawValue, header.RawValueLength);
}

ListenerVerb VerbOf(const HTTP_REQUEST& request) {
  switch (request.Verb) {
    case HttpVerbPOST:
      return ListenerVerb::Post;
    case HttpVerbGET:
      return ListenerVerb::Get;
    case HttpVerbOPTIONS:
      return ListenerVerb::Options;
    case HttpVerbUnknown:
      return ListenerVerb::Unknown;
    default:
      return ListenerVerb::Other;
  }
}

bool AsksToYield(const HTTP_REQUEST& request) {
  const HTTP_REQUEST_HEADERS& headers = request.Headers;
  return std::any_of(headers.pUnknownHeaders, headers.pUnknownHeaders + headers.UnknownHeaderCount,
                     [](const HTTP_UNKNOWN_HEADER& header) {
                       return IsYieldHeader(Text(header.pName, header.NameLength),
                                            Text(header.pRawValue, header.RawValueLength));
                     });
}

void AddReceivedBody(const HTTP_REQUEST& request, std::string& body) {
  for (USHORT i = 0; i < request.EntityChunkCount; ++i) {
    const HTTP_DATA_CHUNK& chunk = request.pEntityChunks[i];
    if (chunk.DataChunkType != HttpDataChunkFromMemory) continue;
    body += Text(static_cast<const char*>(chunk.FromMemory.pBuffer), chunk.FromMemory.BufferLength);
  }
}

}  // namespace

RequestIntake::RequestIntake(const HttpQueue& queue)
    : queue_(queue), head_(kBufferBytes / sizeof(std::uint64_t)), piece_(kBufferBytes) {}

bool RequestIntake::Receive(ListenerRequest& request) {
  std::fill(head_.begin(), head_.end(), 0);
  auto* const raw = reinterpret_cast<HTTP_REQUEST*>(head_.data());
  ULONG received = 0;
  // There is no second attempt with a larger buffer.
  if (queue_.Api().receiveRequest(queue_.Handle(), HTTP_NULL_ID, 0, raw, kBufferBytes, &received, nullptr) !=
      NO_ERROR) {
    return false;
  }
  request = {};
  request.id = raw->RequestId;
  request.method = ListenerMethod(VerbOf(*raw), Text(raw->pUnknownVerb, raw->UnknownVerbLength));
  request.path = Text(raw->pRawUrl, raw->RawUrlLength);
  request.authorization = Known(*raw, HttpHeaderAuthorization);
  request.accept = Known(*raw, HttpHeaderAccept);
  request.contentType = Known(*raw, HttpHeaderContentType);
  request.yield = AsksToYield(*raw);
  AddReceivedBody(*raw, request.body);
  return true;
}

void RequestIntake::ReadBody(ListenerRequest& request) {
  if (!ReadsBody(request.method)) return;
  ULONG received = 0;
  while (queue_.Api().receiveBody(queue_.Handle(), request.id, 0, piece_.data(), kBufferBytes, &received,
                                  nullptr) == NO_ERROR &&
         received > 0) {
    request.body.append(piece_.data(), received);
  }
}

}  // namespace qv
