#include "httpapi/exchange.h"

#include <algorithm>
#include <array>

#include "httpapi/http_clock.h"

namespace qv::devhost {
namespace {

constexpr std::size_t kReceiveSize = 16 * 1024;

std::optional<std::string> JoinChunks(std::span<const HTTP_DATA_CHUNK> chunks) {
  std::string bytes;
  for (const HTTP_DATA_CHUNK& chunk : chunks) {
    // Files and cached fragments are not needed by anybody here.
    if (chunk.DataChunkType != HttpDataChunkFromMemory) return std::nullopt;
    bytes.append(static_cast<const char*>(chunk.FromMemory.pBuffer), chunk.FromMemory.BufferLength);
  }
  return bytes;
}

ResponseHead HeadOf(const HTTP_RESPONSE& response) {
  ResponseHead head;
  head.status = response.StatusCode;
  head.reason.assign(response.pReason == nullptr ? "" : response.pReason, response.ReasonLength);
  for (std::size_t id = 0; id < kResponseHeaders; ++id) {
    const HTTP_KNOWN_HEADER& known = response.Headers.KnownHeaders[id];
    if (known.RawValueLength == 0) continue;
    head.headers.emplace_back(ResponseHeaderName(id), std::string(known.pRawValue, known.RawValueLength));
  }
  for (USHORT i = 0; i < response.Headers.UnknownHeaderCount; ++i) {
    const HTTP_UNKNOWN_HEADER& header = response.Headers.pUnknownHeaders[i];
    head.headers.emplace_back(std::string(header.pName, header.NameLength),
                              std::string(header.pRawValue, header.RawValueLength));
  }
  return head;
}

}  // namespace

Exchange::Exchange(HTTP_REQUEST_ID id, std::shared_ptr<Connection> connection, RequestHead head)
    : id_(id),
      connection_(std::move(connection)),
      head_(std::move(head)),
      bodyLeft_(head_.contentLength),
      wantsContinue_(head_.expectsContinue && head_.HasBody()) {}

bool Exchange::IsBodyRead() const {
  return head_.chunked ? chunks_.IsDone() : bodyLeft_ == 0;
}

bool Exchange::AskForBody() {
  const bool ask = wantsContinue_ && !headSent_ && !connection_->HasBuffered();
  wantsContinue_ = false;
  return !ask || connection_->Send("HTTP/1.1 100 Continue\r\n\r\n");
}

ULONG Exchange::ReadChunked(char* buffer, ULONG size, ULONG& received) {
  std::array<char, kReceiveSize> piece;
  while (received == 0 && !chunks_.IsDone()) {
    const int got = connection_->Receive(piece.data(), piece.size());
    if (got <= 0) return ERROR_CONNECTION_INVALID;
    const std::string_view input(piece.data(), static_cast<std::size_t>(got));
    const auto step = chunks_.Feed(input, buffer, size);
    connection_->PutBack(input.substr(step.consumed));
    received = static_cast<ULONG>(step.written);
    if (chunks_.IsBroken()) return ERROR_CONNECTION_INVALID;
  }
  return received > 0 ? NO_ERROR : ERROR_HANDLE_EOF;
}

ULONG Exchange::ReadBody(void* buffer, ULONG size, ULONG& received) {
  received = 0;
  if (IsBodyRead()) return ERROR_HANDLE_EOF;
  if (buffer == nullptr || size == 0) return ERROR_INVALID_PARAMETER;
  ULONG result = ERROR_CONNECTION_INVALID;
  if (!AskForBody()) {
    // The client is gone.
  } else if (head_.chunked) {
    result = ReadChunked(static_cast<char*>(buffer), size, received);
  } else {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, bodyLeft_));
    const int got = connection_->Receive(static_cast<char*>(buffer), wanted);
    if (got > 0) {
      received = static_cast<ULONG>(got);
      bodyLeft_ -= received;
      result = NO_ERROR;
    }
  }
  // What follows on such a connection cannot be told from the body.
  if (result == ERROR_CONNECTION_INVALID) Abort();
  return result;
}

ULONG Exchange::SendHead(const HTTP_RESPONSE& response, ULONG flags, ULONG& sent) {
  if (headSent_) return ERROR_INVALID_PARAMETER;
  const auto bytes = JoinChunks({response.pEntityChunks, response.EntityChunkCount});
  if (!bytes) return ERROR_NOT_SUPPORTED;
  const ResponseHead head = HeadOf(response);
  const bool more = (flags & HTTP_SEND_RESPONSE_FLAG_MORE_DATA) != 0;
  const auto bodyBytes = more ? std::nullopt : std::optional<std::uint64_t>(bytes->size());
  framing_ = DecideFraming(head_, head, bodyBytes, (flags & HTTP_SEND_RESPONSE_FLAG_DISCONNECT) != 0);
  // A client that was not asked for its body may send it or not: the connection cannot go on.
  if (wantsContinue_) framing_.closes = true;
  headSent_ = true;
  std::string answer = WriteResponseHead(head, framing_, HttpNow());
  if (framing_.sendsBody) answer += *bytes;
  return Finish(answer, flags, sent);
}

ULONG Exchange::SendBody(std::span<const HTTP_DATA_CHUNK> chunks, ULONG flags, ULONG& sent) {
  if (!headSent_) return ERROR_INVALID_PARAMETER;
  const auto bytes = JoinChunks(chunks);
  if (!bytes) return ERROR_NOT_SUPPORTED;
  if ((flags & HTTP_SEND_RESPONSE_FLAG_DISCONNECT) != 0) framing_.closes = true;
  return Finish(framing_.sendsBody ? *bytes : std::string(), flags, sent);
}

ULONG Exchange::Finish(std::string_view bytes, ULONG flags, ULONG& sent) {
  sent = 0;
  if (!connection_->Send(bytes)) {
    Abort();
    return ERROR_CONNECTION_INVALID;
  }
  sent = static_cast<ULONG>(bytes.size());
  if ((flags & HTTP_SEND_RESPONSE_FLAG_MORE_DATA) != 0) return NO_ERROR;
  const std::scoped_lock lock(mutex_);
  answered_ = true;
  changed_.notify_all();
  return NO_ERROR;
}

bool Exchange::IsAnswered() const {
  const std::scoped_lock lock(mutex_);
  return answered_ || aborted_;
}

void Exchange::Abort() {
  connection_->Cut();
  const std::scoped_lock lock(mutex_);
  aborted_ = true;
  changed_.notify_all();
}

bool Exchange::WaitUntilAnswered() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return answered_ || aborted_; });
  return !aborted_;
}

bool Exchange::SkipRest() {
  if (framing_.closes) {
    if (!IsBodyRead()) connection_->Linger();
    return false;
  }
  const ULONGLONG until = GetTickCount64() + static_cast<ULONGLONG>(connection_->WaitMs());
  std::array<char, kReceiveSize> rest;
  ULONG result = NO_ERROR;
  while (result == NO_ERROR && GetTickCount64() < until) {
    ULONG received = 0;
    result = ReadBody(rest.data(), static_cast<ULONG>(rest.size()), received);
  }
  return result == ERROR_HANDLE_EOF;
}

}  // namespace qv::devhost
