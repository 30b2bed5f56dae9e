#pragma once

#include <objbase.h>

#include <string>
#include <utility>

namespace qv {

/// Owner of one text that a callee allocated with CoTaskMemAlloc.
class TaskMemoryText {
 public:
  TaskMemoryText() = default;
  TaskMemoryText(const TaskMemoryText&) = delete;
  TaskMemoryText& operator=(const TaskMemoryText&) = delete;
  ~TaskMemoryText() { CoTaskMemFree(text_); }

  /// For an out parameter; frees what is held.
  [[nodiscard]] LPWSTR* Put() {
    CoTaskMemFree(std::exchange(text_, nullptr));
    return &text_;
  }
  /// A copy; empty when nothing is held.
  [[nodiscard]] std::wstring Text() const { return text_ != nullptr ? std::wstring(text_) : std::wstring(); }

 private:
  LPWSTR text_ = nullptr;
};

}  // namespace qv
