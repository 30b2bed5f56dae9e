#pragma once

namespace qv {

/// Knows which of this process's services of one kind took their port last. A newcomer stops that one when it
/// finds the port taken: the other's worker may wait for this very thread, or be with a client for minutes,
/// and would not hear a request to yield. A member of the service, which has `Stop`. Host UI thread.
template <typename Service>
class NewestInProcess {
 public:
  explicit NewestInProcess(Service& self) : self_(self) {}
  NewestInProcess(const NewestInProcess&) = delete;
  NewestInProcess& operator=(const NewestInProcess&) = delete;
  ~NewestInProcess() {
    if (newest_ == &self_) newest_ = nullptr;
  }

  void Mark() { newest_ = &self_; }
  void StopOther() const {
    if (newest_ != nullptr && newest_ != &self_) newest_->Stop();
  }

 private:
  static inline Service* newest_ = nullptr;
  Service& self_;
};

}  // namespace qv
