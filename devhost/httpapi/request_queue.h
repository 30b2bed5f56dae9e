#pragma once

#include <winsock2.h>

#include <http.h>

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "httpapi/exchange.h"
#include "httpapi/url_claim.h"

namespace qv::devhost {

/// A request queue with its URLs and connections.
class RequestQueue : public std::enable_shared_from_this<RequestQueue> {
 public:
  [[nodiscard]] ULONG AddUrl(const wchar_t* url);
  [[nodiscard]] ULONG RemoveUrl(const wchar_t* url);

  /// Waits for a request and describes it in the buffer; with an id, describes that one again.
  /// ERROR_MORE_DATA when the buffer is too small: `needed` says how large it must be, and the request can be
  /// asked for by its id. ERROR_OPERATION_ABORTED once the queue is down.
  [[nodiscard]] ULONG Receive(HTTP_REQUEST_ID id, HTTP_REQUEST* buffer, ULONG size, ULONG& needed);

  /// The request that was received and is not answered yet, or null.
  [[nodiscard]] std::shared_ptr<Exchange> Find(HTTP_REQUEST_ID id);
  /// Lets go of a request that is answered or lost.
  void ForgetAnswered(const Exchange& exchange);

  /// Queues a request for somebody to receive; null when the queue is down or full.
  [[nodiscard]] std::shared_ptr<Exchange> Offer(const std::shared_ptr<Connection>& connection,
                                                RequestHead head);

  /// Nothing is received or queued any more; what was received and whose answer has not begun is cut.
  void ShutDown();
  /// The same, and gives back every URL and ends every connection.
  void Close();

 private:
  void Welcome(UniqueSocket socket, HttpLimits limits);
  [[nodiscard]] std::shared_ptr<Exchange> TakeFirst(std::unique_lock<std::mutex>& lock);

  std::mutex mutex_;
  std::condition_variable arrived_;
  bool down_ = false;
  bool closed_ = false;
  std::vector<std::unique_ptr<UrlClaim>> claims_;
  std::vector<std::weak_ptr<Connection>> connections_;
  std::deque<std::shared_ptr<Exchange>> waiting_;
  std::map<HTTP_REQUEST_ID, std::shared_ptr<Exchange>> received_;
};

}  // namespace qv::devhost
