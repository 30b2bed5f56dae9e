#include "translation/pending_requests.h"

#include <utility>

namespace qv {

std::shared_ptr<PendingRequest> PendingRequests::Register(const std::wstring& requestId, std::uint64_t runId,
                                                          std::wstring message) {
  auto request = std::make_shared<PendingRequest>();
  request->runId = runId;
  request->message = std::move(message);
  request->answered.Reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  if (!request->answered) return nullptr;
  const std::scoped_lock lock(mutex_);
  byId_.insert_or_assign(requestId, request);
  return request;
}

void PendingRequests::Remove(const std::wstring& requestId) {
  const std::scoped_lock lock(mutex_);
  byId_.erase(requestId);
}

bool PendingRequests::Has(const std::wstring& requestId) {
  const std::scoped_lock lock(mutex_);
  return byId_.contains(requestId);
}

bool PendingRequests::Complete(const std::wstring& requestId, const TranslateResult& result) {
  const std::scoped_lock lock(mutex_);
  const auto entry = byId_.find(requestId);
  if (entry == byId_.end()) return false;
  entry->second->result = result;
  SetEvent(entry->second->answered.Get());
  // A second answer to the same request finds nobody.
  byId_.erase(entry);
  return true;
}

std::vector<std::wstring> PendingRequests::WaitingMessages() {
  const std::scoped_lock lock(mutex_);
  std::vector<std::wstring> messages;
  for (const auto& [requestId, request] : byId_)
    messages.push_back(request->message);
  return messages;
}

void PendingRequests::CancelRun(std::uint64_t runId) {
  const std::scoped_lock lock(mutex_);
  std::erase_if(byId_, [runId](const auto& entry) {
    PendingRequest& request = *entry.second;
    if (request.runId != runId) return false;
    request.result = TranslateResult::Cancelled();
    SetEvent(request.answered.Get());
    return true;
  });
}

}  // namespace qv
