#include "webview2/chromium/page_input.h"

#include <windowsx.h>

#include <algorithm>
#include <iterator>

#include "foundation/text.h"
#include "webview2/chromium/key_names.h"

namespace qv::devhost {
namespace {

// The protocol's bits.
constexpr int kAlt = 1;
constexpr int kControl = 2;
constexpr int kShift = 8;
/// Bit 30 of a key message: the key was down before.
constexpr LPARAM kWasDown = LPARAM{1} << 30;

struct ButtonRow {
  UINT message;
  bool down;
  int clicks;
  const char* button;
};

constexpr ButtonRow kButtons[] = {
    {WM_LBUTTONDOWN, true, 1, "left"},    {WM_LBUTTONDBLCLK, true, 2, "left"},
    {WM_LBUTTONUP, false, 1, "left"},     {WM_RBUTTONDOWN, true, 1, "right"},
    {WM_RBUTTONDBLCLK, true, 2, "right"}, {WM_RBUTTONUP, false, 1, "right"},
    {WM_MBUTTONDOWN, true, 1, "middle"},  {WM_MBUTTONDBLCLK, true, 2, "middle"},
    {WM_MBUTTONUP, false, 1, "middle"},   {WM_XBUTTONDOWN, true, 1, nullptr},
    {WM_XBUTTONDBLCLK, true, 2, nullptr}, {WM_XBUTTONUP, false, 1, nullptr},
};

bool IsDown(int virtualKey) {
  return GetKeyState(virtualKey) < 0;
}

int Modifiers() {
  return (IsDown(VK_MENU) ? kAlt : 0) | (IsDown(VK_CONTROL) ? kControl : 0) | (IsDown(VK_SHIFT) ? kShift : 0);
}

/// The protocol's set of pressed buttons from the MK_ bits of a mouse message.
int PressedButtons(WPARAM keys) {
  return ((keys & MK_LBUTTON) ? 1 : 0) | ((keys & MK_RBUTTON) ? 2 : 0) | ((keys & MK_MBUTTON) ? 4 : 0) |
         ((keys & MK_XBUTTON1) ? 8 : 0) | ((keys & MK_XBUTTON2) ? 16 : 0);
}

const char* HeldButton(WPARAM keys) {
  if (keys & MK_LBUTTON) return "left";
  if (keys & MK_RBUTTON) return "right";
  return keys & MK_MBUTTON ? "middle" : "none";
}

POINT PositionOf(LPARAM position) {
  return {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
}

/// What the key is about to type: TranslateMessage has put it into the queue ahead of the key message.
wchar_t AwaitedCharacter(HWND window) {
  MSG next{};
  return PeekMessageW(&next, window, WM_CHAR, WM_CHAR, PM_NOREMOVE) ? static_cast<wchar_t>(next.wParam)
                                                                    : L'\0';
}

/// What the key types by itself.
wchar_t PlainCharacter(WPARAM virtualKey) {
  const UINT mapped = MapVirtualKeyW(static_cast<UINT>(virtualKey), MAPVK_VK_TO_CHAR) & 0x7FFF;
  const auto unit = static_cast<wchar_t>(mapped);
  return unit >= L'A' && unit <= L'Z' && !IsDown(VK_SHIFT) ? static_cast<wchar_t>(unit + 32) : unit;
}

}  // namespace

std::optional<LRESULT> PageInput::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_MOUSEMOVE:
      OnMove(window, wParam, lParam);
      return 0;
    case WM_MOUSELEAVE:
      OnLeave();
      return 0;
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
      OnWheel(window, wParam, lParam, message == WM_MOUSEHWHEEL);
      return 0;
    case WM_KEYDOWN:
    case WM_KEYUP:
      OnKey(window, message, wParam, lParam);
      return 0;
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
      // The host's menus answer to the same keys.
      OnKey(window, message, wParam, lParam);
      return std::nullopt;
    case WM_CHAR:
      OnCharacter(wParam);
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTALLKEYS | DLGC_WANTCHARS | DLGC_WANTARROWS | DLGC_WANTTAB;
    default:
      break;
  }
  const bool isButton = std::any_of(std::begin(kButtons), std::end(kButtons),
                                    [message](const ButtonRow& row) { return row.message == message; });
  if (!isButton) return std::nullopt;
  OnButton(window, message, wParam, lParam);
  return 0;
}

void PageInput::TellMouse(const char* type, POINT position, WPARAM keys, Json more) const {
  Json parameters{{"type", type},
                  {"x", position.x},
                  {"y", position.y},
                  {"modifiers", Modifiers()},
                  {"buttons", PressedButtons(keys)}};
  parameters.update(more);
  link_.Tell("Input.dispatchMouseEvent", std::move(parameters));
}

void PageInput::OnMove(HWND window, WPARAM keys, LPARAM position) {
  if (!tracking_) {
    TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE, window, 0};
    tracking_ = TrackMouseEvent(&track) != FALSE;
  }
  TellMouse("mouseMoved", PositionOf(position), keys, {{"button", HeldButton(keys)}});
}

void PageInput::OnLeave() {
  tracking_ = false;
  TellMouse("mouseMoved", {-1, -1}, 0, {{"button", "none"}});
}

void PageInput::OnButton(HWND window, UINT message, WPARAM wParam, LPARAM position) {
  const auto& row = *std::find_if(std::begin(kButtons), std::end(kButtons),
                                  [message](const ButtonRow& entry) { return entry.message == message; });
  const WPARAM keys = GET_KEYSTATE_WPARAM(wParam);
  const char* button = row.button ? row.button : GET_XBUTTON_WPARAM(wParam) == XBUTTON1 ? "back" : "forward";
  TellMouse(row.down ? "mousePressed" : "mouseReleased", PositionOf(position), keys,
            {{"button", button}, {"clickCount", row.clicks}});
  // Captured until the last button is released, so that a drag may leave the window.
  if (!row.down && PressedButtons(keys) == 0) ReleaseCapture();
  if (!row.down) return;
  SetCapture(window);
  SetFocus(window);
}

void PageInput::OnWheel(HWND window, WPARAM wParam, LPARAM screenPosition, bool horizontal) {
  POINT position = PositionOf(screenPosition);
  ScreenToClient(window, &position);
  const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
  TellMouse("mouseWheel", position, GET_KEYSTATE_WPARAM(wParam),
            {{"button", "none"}, {"deltaX", horizontal ? delta : 0}, {"deltaY", horizontal ? 0 : -delta}});
}

void PageInput::OnKey(HWND window, UINT message, WPARAM virtualKey, LPARAM flags) {
  const bool down = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
  const wchar_t awaited = down ? AwaitedCharacter(window) : L'\0';
  const auto name =
      NameOfKey(static_cast<unsigned>(virtualKey), awaited >= L' ' ? awaited : PlainCharacter(virtualKey));
  link_.Tell("Input.dispatchKeyEvent", {{"type", down ? "rawKeyDown" : "keyUp"},
                                        {"modifiers", Modifiers()},
                                        {"windowsVirtualKeyCode", virtualKey},
                                        {"nativeVirtualKeyCode", virtualKey},
                                        {"autoRepeat", down && (flags & kWasDown) != 0},
                                        {"key", name.key},
                                        {"code", name.code}});
}

void PageInput::OnCharacter(WPARAM unit) {
  const auto character = static_cast<wchar_t>(unit);
  if (IS_HIGH_SURROGATE(character)) {
    highSurrogate_ = character;
    return;
  }
  std::wstring text(1, character);
  if (IS_LOW_SURROGATE(character)) text.insert(0, 1, highSurrogate_);
  highSurrogate_ = 0;
  // Of the control characters only Enter types something; the others are commands, told by their keys.
  if (character < L' ' && character != L'\r') return;
  const std::string bytes = ToUtf8(text);
  link_.Tell("Input.dispatchKeyEvent",
             {{"type", "char"}, {"modifiers", Modifiers()}, {"text", bytes}, {"unmodifiedText", bytes}});
}

}  // namespace qv::devhost
