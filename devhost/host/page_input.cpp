#include "host/page_input.h"

namespace qv::devhost {
namespace {

/// Bits 30 and 31 of a key message: the key was down before, and is let go.
constexpr LPARAM kKeyUp = static_cast<LPARAM>(0xC0000001);

void PressKey(HWND window, WPARAM key, wchar_t character) {
  SendMessageW(window, WM_KEYDOWN, key, 1);
  SendMessageW(window, WM_CHAR, character, 1);
  SendMessageW(window, WM_KEYUP, key, kKeyUp);
}

}  // namespace

void ClickIn(HWND window, POINT point) {
  const LPARAM place = MAKELPARAM(point.x, point.y);
  SendMessageW(window, WM_MOUSEMOVE, 0, place);
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
  SendMessageW(window, WM_LBUTTONUP, 0, place);
}

void TypeInto(HWND window, std::wstring_view text) {
  SetFocus(window);
  for (const wchar_t unit : text) {
    if (unit == L'\n') {
      PressKey(window, VK_RETURN, L'\r');
    } else if (unit == L'\t') {
      PressKey(window, VK_TAB, L'\t');
    } else {
      SendMessageW(window, WM_CHAR, unit, 1);
    }
  }
}

}  // namespace qv::devhost
