#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "foundation/unique_handle.h"
#include "translation/translate_request.h"

namespace qv {

/// One request that waits for the page's answer.
struct PendingRequest {
  std::uint64_t runId = 0;
  /// What the page was asked, to ask again when it has been loaded anew.
  std::wstring message;
  /// Manual-reset; set once `result` is there.
  UniqueKernelHandle answered;
  TranslateResult result;
};

/// Batch requests that the page has not answered yet, by request id. Lives as long as the pane and its last
/// worker. Any thread.
class PendingRequests {
 public:
  /// Null when no event could be made. `message` is what the page is asked.
  [[nodiscard]] std::shared_ptr<PendingRequest> Register(const std::wstring& requestId, std::uint64_t runId,
                                                         std::wstring message);

  void Remove(const std::wstring& requestId);

  /// Whether somebody still waits for the answer.
  [[nodiscard]] bool Has(const std::wstring& requestId);

  /// Gives the result to whoever waits; false for an unknown id.
  [[nodiscard]] bool Complete(const std::wstring& requestId, const TranslateResult& result);

  /// What the page was asked and has not answered.
  [[nodiscard]] std::vector<std::wstring> WaitingMessages();

  /// Ends all waiting requests of a run as cancelled.
  void CancelRun(std::uint64_t runId);

 private:
  std::mutex mutex_;
  std::map<std::wstring, std::shared_ptr<PendingRequest>> byId_;
};

}  // namespace qv
