#pragma once

#include <windows.h>

#include <optional>

#include "webview2/chromium/page_link.h"

namespace qv::devhost {

/// Makes a page's input of the messages of its window. A pixel of the window is one of the page.
class PageInput {
 public:
  explicit PageInput(const PageLink& link) : link_(link) {}

  /// Nothing for messages that are no input, or whose default handling is wanted as well.
  [[nodiscard]] std::optional<LRESULT> OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

 private:
  void OnMove(HWND window, WPARAM keys, LPARAM position);
  void OnLeave();
  void OnButton(HWND window, UINT message, WPARAM wParam, LPARAM position);
  void OnWheel(HWND window, WPARAM wParam, LPARAM screenPosition, bool horizontal);
  void OnKey(HWND window, UINT message, WPARAM virtualKey, LPARAM flags);
  void OnCharacter(WPARAM unit);
  void TellMouse(const char* type, POINT position, WPARAM keys, Json more) const;

  const PageLink& link_;
  /// WM_MOUSELEAVE was asked for.
  bool tracking_ = false;
  /// The first half of a character beyond the BMP, 0 for none.
  wchar_t highSurrogate_ = 0;
};

}  // namespace qv::devhost
