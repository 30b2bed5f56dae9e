#include "webview2/chromium/key_names.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

#include "foundation/text.h"

namespace qv::devhost {
namespace {

struct Row {
  unsigned virtualKey;
  const char* key;
  const char* code;
};

// Keys with a name. An empty key stands for what the key types.
constexpr Row kRows[] = {
    {VK_BACK, "Backspace", "Backspace"},
    {VK_TAB, "Tab", "Tab"},
    {VK_RETURN, "Enter", "Enter"},
    {VK_SHIFT, "Shift", "ShiftLeft"},
    {VK_CONTROL, "Control", "ControlLeft"},
    {VK_MENU, "Alt", "AltLeft"},
    {VK_PAUSE, "Pause", "Pause"},
    {VK_CAPITAL, "CapsLock", "CapsLock"},
    {VK_ESCAPE, "Escape", "Escape"},
    {VK_SPACE, " ", "Space"},
    {VK_PRIOR, "PageUp", "PageUp"},
    {VK_NEXT, "PageDown", "PageDown"},
    {VK_END, "End", "End"},
    {VK_HOME, "Home", "Home"},
    {VK_LEFT, "ArrowLeft", "ArrowLeft"},
    {VK_UP, "ArrowUp", "ArrowUp"},
    {VK_RIGHT, "ArrowRight", "ArrowRight"},
    {VK_DOWN, "ArrowDown", "ArrowDown"},
    {VK_INSERT, "Insert", "Insert"},
    {VK_DELETE, "Delete", "Delete"},
    {VK_LWIN, "Meta", "MetaLeft"},
    {VK_RWIN, "Meta", "MetaRight"},
    {VK_APPS, "ContextMenu", "ContextMenu"},
    {VK_OEM_1, "", "Semicolon"},
    {VK_OEM_PLUS, "", "Equal"},
    {VK_OEM_COMMA, "", "Comma"},
    {VK_OEM_MINUS, "", "Minus"},
    {VK_OEM_PERIOD, "", "Period"},
    {VK_OEM_2, "", "Slash"},
    {VK_OEM_3, "", "Backquote"},
    {VK_OEM_4, "", "BracketLeft"},
    {VK_OEM_5, "", "Backslash"},
    {VK_OEM_6, "", "BracketRight"},
    {VK_OEM_7, "", "Quote"},
};

std::string Typed(wchar_t character) {
  return character < L' ' ? std::string() : ToUtf8(std::wstring(1, character));
}

}  // namespace

KeyName NameOfKey(unsigned virtualKey, wchar_t character) {
  const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                [virtualKey](const Row& entry) { return entry.virtualKey == virtualKey; });
  if (row != std::end(kRows)) return {*row->key != '\0' ? row->key : Typed(character), row->code};
  // The virtual keys of letters and digits are their ASCII codes.
  const auto ascii = static_cast<char>(virtualKey);
  if (virtualKey >= '0' && virtualKey <= '9') return {Typed(character), std::string("Digit") + ascii};
  if (virtualKey >= 'A' && virtualKey <= 'Z') return {Typed(character), std::string("Key") + ascii};
  if (virtualKey >= VK_NUMPAD0 && virtualKey <= VK_NUMPAD9)
    return {Typed(character), "Numpad" + std::to_string(virtualKey - VK_NUMPAD0)};
  if (virtualKey >= VK_F1 && virtualKey <= VK_F24) {
    const std::string name = "F" + std::to_string(virtualKey - VK_F1 + 1);
    return {name, name};
  }
  return {Typed(character), ""};
}

}  // namespace qv::devhost
