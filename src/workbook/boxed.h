#pragma once

#include <memory>
#include <utility>

namespace qv {

/// An optional value that costs one pointer while it is absent; for rarely filled members of objects that
/// exist in hundreds of thousands. Copies copy the value. Used like std::optional.
template <typename T>
class Boxed {
 public:
  Boxed() = default;
  Boxed(const Boxed& other) : value_(other.value_ ? std::make_unique<T>(*other.value_) : nullptr) {}
  Boxed(Boxed&&) noexcept = default;
  Boxed& operator=(Boxed other) noexcept {
    value_.swap(other.value_);
    return *this;
  }
  Boxed& operator=(T value) {
    value_ = std::make_unique<T>(std::move(value));
    return *this;
  }
  ~Boxed() = default;

  [[nodiscard]] bool has_value() const { return value_ != nullptr; }
  [[nodiscard]] explicit operator bool() const { return has_value(); }
  [[nodiscard]] const T& operator*() const { return *value_; }
  [[nodiscard]] T& operator*() { return *value_; }
  [[nodiscard]] const T* operator->() const { return value_.get(); }
  [[nodiscard]] T* operator->() { return value_.get(); }
  void reset() { value_.reset(); }

 private:
  std::unique_ptr<T> value_;
};

}  // namespace qv
