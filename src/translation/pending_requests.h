#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "foundation/unique_handle.h"
#include "translation/translate_request.h"

namespace qv {

/// Requests that the page has not answered yet, by request id. Lives as long as the pane and its last worker.
/// Any thread. `Answer` has a static `Cancelled()`.
template <typename Answer>
class PendingTable {
 public:
  /// One request that waits for the page's answer.
  struct Entry {
    std::uint64_t runId = 0;
    /// What the page was asked, to ask again when it has been loaded anew.
    std::wstring message;
    /// Manual-reset; set once `result` is there.
    UniqueKernelHandle answered;
    Answer result;
  };

  /// Null when no event could be made. `message` is what the page is asked.
  [[nodiscard]] std::shared_ptr<Entry> Register(const std::wstring& requestId, std::uint64_t runId,
                                                std::wstring message) {
    auto request = std::make_shared<Entry>();
    request->runId = runId;
    request->message = std::move(message);
    request->answered.Reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!request->answered) return nullptr;
    const std::scoped_lock lock(mutex_);
    byId_.insert_or_assign(requestId, request);
    return request;
  }

  void Remove(const std::wstring& requestId) {
    const std::scoped_lock lock(mutex_);
    byId_.erase(requestId);
  }

  /// Whether somebody still waits for the answer.
  [[nodiscard]] bool Has(const std::wstring& requestId) {
    const std::scoped_lock lock(mutex_);
    return byId_.contains(requestId);
  }

  /// Gives the result to whoever waits; false for an unknown id.
  [[nodiscard]] bool Complete(const std::wstring& requestId, const Answer& result) {
    const std::scoped_lock lock(mutex_);
    const auto entry = byId_.find(requestId);
    if (entry == byId_.end()) return false;
    entry->second->result = result;
    SetEvent(entry->second->answered.Get());
    // A second answer to the same request finds nobody.
    byId_.erase(entry);
    return true;
  }

  /// What the page was asked and has not answered.
  [[nodiscard]] std::vector<std::wstring> WaitingMessages() {
    const std::scoped_lock lock(mutex_);
    std::vector<std::wstring> messages;
    for (const auto& [requestId, request] : byId_)
      messages.push_back(request->message);
    return messages;
  }

  /// Ends all waiting requests of a run as cancelled.
  void CancelRun(std::uint64_t runId) {
    const std::scoped_lock lock(mutex_);
    std::erase_if(byId_, [runId](const auto& entry) {
      Entry& request = *entry.second;
      if (request.runId != runId) return false;
      request.result = Answer::Cancelled();
      SetEvent(request.answered.Get());
      return true;
    });
  }

 private:
  std::mutex mutex_;
  std::map<std::wstring, std::shared_ptr<Entry>> byId_;
};

/// The batches that a run's worker waits for.
using PendingRequests = PendingTable<TranslateResult>;

}  // namespace qv
