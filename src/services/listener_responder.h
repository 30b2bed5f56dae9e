#pragma once

#include <string_view>

#include "services/http_queue.h"
#include "services/listener_request.h"

namespace qv {

/// A status line's two parts; the reason is ASCII.
struct ListenerStatus {
  int code;
  std::string_view reason;
};

/// A header of an answer.
struct ListenerHeader {
  std::string_view name;
  std::string_view value;
};

inline constexpr std::string_view kJsonContentType = "application/json";

/// Answers one request, once: at a stroke, or as a stream. Every answer has "Access-Control-Allow-Origin: *".
/// On the listener's worker only.
class ListenerResponder {
 public:
  ListenerResponder(const HttpQueue& queue, HTTP_REQUEST_ID request) : queue_(queue), request_(request) {}

  /// A whole answer of the service's own: JSON, or no body and then no "Content-Type". A client that is gone
  /// is nobody's concern.
  void Send(ListenerStatus status, std::string_view body);
  /// The same with a type, which is named also where there is no body.
  void Send(ListenerStatus status, std::string_view body, std::string_view contentType);

  /// Answers a request to yield and, when it is granted, ends the service after this request; false for any
  /// other request. `refused` is the status with which a yield without the header is turned away.
  [[nodiscard]] bool AnswerYield(const ListenerRequest& request, ListenerStatus refused);

  /// A stream's head: "Content-Type", "Cache-Control: no-cache" and the origin header. NO_ERROR, or the
  /// system's code.
  [[nodiscard]] ULONG StartStream(ListenerStatus status, std::string_view contentType);
  /// One piece, sent at once; NO_ERROR, or the system's code.
  [[nodiscard]] ULONG SendPiece(std::string_view bytes);
  void EndStream();

  /// Whether the service ends after this request.
  [[nodiscard]] bool HasYielded() const { return yielded_; }

 private:
  const HttpQueue& queue_;
  const HTTP_REQUEST_ID request_;
  bool yielded_ = false;
};

}  // namespace qv
