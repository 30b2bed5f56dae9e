#pragma once

#include <cstdint>
#include <string>

#include "foundation/unique_handle.h"
#include "services/http_api.h"

namespace qv {

/// A request queue bound to one address of this machine. Gives everything back when it goes: first the URL,
/// then the queue, then the API.
class HttpQueue {
 public:
  /// For "http://127.0.0.1:<port>/".
  explicit HttpQueue(std::uint16_t port);
  HttpQueue(const HttpQueue&) = delete;
  HttpQueue& operator=(const HttpQueue&) = delete;
  ~HttpQueue();

  /// Null, or the name of the function that failed.
  [[nodiscard]] const wchar_t* Open();
  /// Registers the URL on the open queue: NO_ERROR, or why not.
  [[nodiscard]] ULONG AddUrl();

  /// Makes the blocked receive fail, and cuts what was received and whose answer has not begun. From any
  /// thread, once the queue is open.
  void Shutdown() const;
  /// Makes every call fail that waits on the queue now, later ones not. From any thread.
  void CancelCalls() const;
  /// Ends the connection of a request, and with it whatever waits for its client. From any thread.
  void Cancel(HTTP_REQUEST_ID request) const;

  /// For the calls on an open queue.
  [[nodiscard]] const HttpApi& Api() const { return *api_; }
  [[nodiscard]] HANDLE Handle() const { return queue_.Get(); }

 private:
  const HttpApi* const api_;
  const std::wstring url_;
  bool httpInitialized_ = false;
  UniqueKernelHandle queue_;
  bool urlAdded_ = false;
};

/// Whether somebody has registered that port's URL, as far as trying tells; false when the API is not there.
[[nodiscard]] bool IsPortTaken(std::uint16_t port);

}  // namespace qv
