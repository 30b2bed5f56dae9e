#pragma once

#include <windows.h>

namespace qv {

/// The colours of the language dialog. Every text has a contrast of at least 5:1, every border that tells
/// something of at least 3:1.
struct UiLanguageColors {
  COLORREF ground;
  COLORREF title;
  COLORREF body;
  /// The one colour besides: the default button, and the ring of what has the keyboard focus.
  COLORREF accent;
  COLORREF accentPressed;
  COLORREF onAccent;
  COLORREF selected;
  COLORREF onSelected;
  COLORREF hairline;
  COLORREF controlBorder;
  COLORREF pressed;
};

/// White ground, dark text and one blue; where the user wants high contrast, the colours chosen for that.
[[nodiscard]] UiLanguageColors ChooseUiLanguageColors();

}  // namespace qv
