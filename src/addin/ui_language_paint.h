#pragma once

#include <windows.h>

namespace qv {

// How the language dialog looks: white ground, dark text, one blue. Every text has a contrast of at least
// 5:1, every border that tells something of at least 3:1, and what has the keyboard focus wears a ring.

inline constexpr COLORREF kDialogTitleColor = RGB(0x1F, 0x23, 0x28);
inline constexpr COLORREF kDialogBodyColor = RGB(0x57, 0x60, 0x6A);

/// The thin border around the whole dialog.
void DrawDialogBorder(HDC dc, const RECT& client);

/// The border around the list; `focused` while the list has the keyboard focus.
void DrawListFrame(HDC dc, const RECT& area, int dpi, bool focused);

/// One row of the list. `text` is its language's name.
void DrawListRow(const DRAWITEMSTRUCT& item, const wchar_t* text, HFONT font, int dpi);

/// A push button with its own window's text; `primary` for the one that the dialog is about.
void DrawDialogButton(const DRAWITEMSTRUCT& item, HFONT font, int dpi, bool primary);

}  // namespace qv
