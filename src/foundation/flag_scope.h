#pragma once

#include <utility>

namespace qv {

/// Sets a flag for its lifetime and puts its former value back at its end, so that a scope inside another one
/// does not end it.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag), former_(std::exchange(flag, true)) {}
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = former_; }

 private:
  bool& flag_;
  bool former_;
};

}  // namespace qv
