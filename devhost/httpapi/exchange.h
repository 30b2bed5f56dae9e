#pragma once

#include <winsock2.h>

#include <http.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <span>

#include "httpapi/connection.h"
#include "httpapi/wire/chunked_decoder.h"
#include "httpapi/wire/response_head.h"

namespace qv::devhost {

/// One request and its answer. The application's calls come from one thread at a time, as the product's do.
class Exchange {
 public:
  Exchange(HTTP_REQUEST_ID id, std::shared_ptr<Connection> connection, RequestHead head);

  [[nodiscard]] HTTP_REQUEST_ID Id() const { return id_; }
  [[nodiscard]] const RequestHead& Head() const { return head_; }
  [[nodiscard]] const Connection& Client() const { return *connection_; }
  [[nodiscard]] bool HasMoreBody() const { return !IsBodyRead(); }

  /// The next bytes of the body; ERROR_HANDLE_EOF behind its end, ERROR_CONNECTION_INVALID without the
  /// client.
  [[nodiscard]] ULONG ReadBody(void* buffer, ULONG size, ULONG& received);

  /// The head and the first bytes of the answer; it is complete unless the flags say that more comes.
  [[nodiscard]] ULONG SendHead(const HTTP_RESPONSE& response, ULONG flags, ULONG& sent);
  [[nodiscard]] ULONG SendBody(std::span<const HTTP_DATA_CHUNK> chunks, ULONG flags, ULONG& sent);

  /// Whether it is answered or lost.
  [[nodiscard]] bool IsAnswered() const;

  /// Whether the application has begun to answer.
  [[nodiscard]] bool HasBegunAnswer() const { return headSent_; }

  /// Ends the exchange and its connection, whatever waits for them.
  void Abort();

  // What the connection's own thread calls.

  /// Whether it was answered, and not lost.
  [[nodiscard]] bool WaitUntilAnswered();
  /// After the answer: passes over what the application left of the body, if that ends in time. Whether the
  /// connection goes on.
  [[nodiscard]] bool SkipRest();

 private:
  [[nodiscard]] bool IsBodyRead() const;
  ULONG ReadChunked(char* buffer, ULONG size, ULONG& received);
  [[nodiscard]] bool AskForBody();
  ULONG Finish(std::string_view bytes, ULONG flags, ULONG& sent);

  const HTTP_REQUEST_ID id_;
  const std::shared_ptr<Connection> connection_;
  const RequestHead head_;

  std::uint64_t bodyLeft_;
  ChunkedDecoder chunks_;
  bool wantsContinue_;
  /// Written by the application's thread only.
  std::atomic<bool> headSent_{false};
  ResponseFraming framing_;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  bool answered_ = false;
  bool aborted_ = false;
};

}  // namespace qv::devhost
