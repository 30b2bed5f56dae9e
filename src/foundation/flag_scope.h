#pragma once

namespace qv {

/// Sets a flag for its lifetime, and clears it at its end.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace qv
