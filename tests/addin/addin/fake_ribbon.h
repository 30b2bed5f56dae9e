#pragma once

#include <windows.h>

#include <memory>
#include <string>

namespace qv {

class FakeRibbonElement;

/// A window of the class that Office draws its ribbon with. What accessibility finds in it are a group, and
/// inside a button and a page tab of the same name; only the tab's default action counts.
class FakeRibbon {
 public:
  FakeRibbon(HWND parent, const std::wstring& tabName);
  FakeRibbon(const FakeRibbon&) = delete;
  FakeRibbon& operator=(const FakeRibbon&) = delete;
  ~FakeRibbon();

  [[nodiscard]] int TabActivations() const { return tabActivations_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

  int tabActivations_ = 0;
  int otherActivations_ = 0;
  FakeRibbonElement* root_;
  HWND window_;
};

}  // namespace qv
