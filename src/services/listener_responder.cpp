#include "services/listener_responder.h"

#include <algorithm>
#include <span>
#include <vector>

namespace qv {
namespace {

constexpr ListenerHeader kAnyOrigin = {"Access-Control-Allow-Origin", "*"};

HTTP_DATA_CHUNK MemoryChunk(std::string_view bytes) {
  HTTP_DATA_CHUNK chunk{};
  chunk.DataChunkType = HttpDataChunkFromMemory;
  // The API only reads, though its declaration lacks the const.
  chunk.FromMemory.pBuffer = const_cast<char*>(bytes.data());
  chunk.FromMemory.BufferLength = static_cast<ULONG>(bytes.size());
  return chunk;
}

/// The headers go out under their names, in order.
ULONG SendHead(const HttpQueue& queue, HTTP_REQUEST_ID request, ListenerStatus status,
               std::span<const ListenerHeader> headers, std::string_view body, ULONG flags) {
  std::vector<HTTP_UNKNOWN_HEADER> raw;
  for (const ListenerHeader& header : headers) {
    raw.push_back({static_cast<USHORT>(header.name.size()), static_cast<USHORT>(header.value.size()),
                   header.name.data(), header.value.data()});
  }
  HTTP_DATA_CHUNK chunk = MemoryChunk(body);
  HTTP_RESPONSE response{};
  response.StatusCode = static_cast<USHORT>(status.code);
  response.ReasonLength = static_cast<USHORT>(status.reason.size());
  response.pReason = status.reason.data();
  response.Headers.UnknownHeaderCount = static_cast<USHORT>(raw.size());
  response.Headers.pUnknownHeaders = raw.data();
  response.EntityChunkCount = body.empty() ? 0 : 1;
  response.pEntityChunks = body.empty() ? nullptr : &chunk;
  ULONG sent = 0;
  return queue.Api().sendResponse(queue.Handle(), request, flags, &response, nullptr, &sent, nullptr, 0,
                                  nullptr, nullptr);
}

ULONG SendMore(const HttpQueue& queue, HTTP_REQUEST_ID request, std::string_view bytes, ULONG flags) {
  HTTP_DATA_CHUNK chunk = MemoryChunk(bytes);
  const bool isEmpty = bytes.empty();
  ULONG sent = 0;
  return queue.Api().sendBody(queue.Handle(), request, flags, isEmpty ? 0 : 1, isEmpty ? nullptr : &chunk,
                              &sent, nullptr, 0, nullptr, nullptr);
}

}  // namespace

void ListenerResponder::Send(ListenerStatus status, std::string_view body) {
  if (!body.empty()) return Send(status, body, kJsonContentType);
  static_cast<void>(SendHead(queue_, request_, status, {&kAnyOrigin, 1}, body, 0));
}

void ListenerResponder::Send(ListenerStatus status, std::string_view body, std::string_view contentType) {
  const ListenerHeader headers[] = {{"Content-Type", contentType}, kAnyOrigin};
  static_cast<void>(SendHead(queue_, request_, status, headers, body, 0));
}

bool ListenerResponder::AnswerYield(const ListenerRequest& request, ListenerStatus refused) {
  const YieldDecision decision = DecideYield(request);
  if (decision == YieldDecision::NotAYield) return false;
  yielded_ = decision == YieldDecision::Granted;
  if (yielded_) {
    Send({200, "OK"}, kYieldGrantedBody);
  } else {
    Send(refused, kUnauthorizedBody);
  }
  return true;
}

ULONG ListenerResponder::StartStream(ListenerStatus status, std::string_view contentType) {
  const ListenerHeader headers[] = {{"Content-Type", contentType}, {"Cache-Control", "no-cache"}, kAnyOrigin};
  return SendHead(queue_, request_, status, headers, {}, HTTP_SEND_RESPONSE_FLAG_MORE_DATA);
}

ULONG ListenerResponder::SendPiece(std::string_view bytes) {
  return SendMore(queue_, request_, bytes, HTTP_SEND_RESPONSE_FLAG_MORE_DATA);
}

void ListenerResponder::EndStream() {
  static_cast<void>(SendMore(queue_, request_, {}, 0));
}

}  // namespace qv
