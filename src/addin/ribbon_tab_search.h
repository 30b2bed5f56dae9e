#pragma once

#include <windows.h>

#include <string>

namespace qv {

/// How much a search in a foreign element tree may still cost.
class SearchBudget {
 public:
  SearchBudget() : deadline_(GetTickCount64() + kMilliseconds) {}

  /// Takes one element, `depth` levels below the window's own; false when the search has to end.
  [[nodiscard]] bool Take(int depth) {
    if (depth > kDepth || IsSpent()) return false;
    --elementsLeft_;
    return true;
  }

  [[nodiscard]] bool IsSpent() const { return elementsLeft_ <= 0 || GetTickCount64() >= deadline_; }

 private:
  // A ribbon has some hundred elements, about ten levels deep.
  static constexpr int kElements = 3000;
  static constexpr int kDepth = 24;
  static constexpr ULONGLONG kMilliseconds = 1500;

  int elementsLeft_ = kElements;
  ULONGLONG deadline_;
};

/// Finds the page tab with this label below a window and carries out its default action. False when there is
/// none, or it refuses.
[[nodiscard]] bool ActivateTabByAccessibility(HWND window, const std::wstring& label, SearchBudget& budget);

/// The same through UI Automation.
[[nodiscard]] bool ActivateTabByAutomation(HWND window, const std::wstring& label, SearchBudget& budget);

}  // namespace qv
