#include "services/http_queue.h"

#include "foundation/text.h"

namespace qv {

HttpQueue::HttpQueue(std::uint16_t port)
    : api_(HttpApi::Get()), url_(Concat(L"http://127.0.0.1:", port, L"/")) {}

HttpQueue::~HttpQueue() {
  if (urlAdded_) api_->removeUrl(queue_.Get(), url_.c_str());
  queue_.Reset();
  if (httpInitialized_) api_->terminate(HTTP_INITIALIZE_SERVER, nullptr);
}

const wchar_t* HttpQueue::Open() {
  if (api_ == nullptr || api_->initialize(HTTPAPI_VERSION_1, HTTP_INITIALIZE_SERVER, nullptr) != NO_ERROR)
    return L"HttpInitialize";
  httpInitialized_ = true;
  return api_->createQueue(queue_.Put(), 0) == NO_ERROR ? nullptr : L"HttpCreateHttpHandle";
}

ULONG HttpQueue::AddUrl() {
  const ULONG result = api_->addUrl(queue_.Get(), url_.c_str(), nullptr);
  urlAdded_ = result == NO_ERROR;
  return result;
}

void HttpQueue::Shutdown() const {
  api_->shutdownQueue(queue_.Get());
}

void HttpQueue::CancelCalls() const {
  CancelIoEx(queue_.Get(), nullptr);
}

void HttpQueue::Cancel(HTTP_REQUEST_ID request) const {
  api_->cancelRequest(queue_.Get(), request, nullptr);
}

bool IsPortTaken(std::uint16_t port) {
  HttpQueue probe(port);
  return probe.Open() == nullptr && probe.AddUrl() != NO_ERROR;
}

}  // namespace qv
