#pragma once

#include <windows.h>

#include "addin/ui_language_colors.h"
#include "addin/ui_languages.h"

namespace qv {

// How the language dialog looks. What has the keyboard focus wears a ring.

/// The thin border around the whole dialog.
void DrawDialogBorder(HDC dc, const RECT& client, const UiLanguageColors& colors);

/// The border around the list; `focused` while the list has the keyboard focus.
void DrawListFrame(HDC dc, const RECT& area, int dpi, bool focused, const UiLanguageColors& colors);

/// One row of the list, in the reading order of its own language.
void DrawListRow(const DRAWITEMSTRUCT& item, const UiLanguage& language, HFONT font, int dpi,
                 const UiLanguageColors& colors);

/// A push button with its own window's text; `primary` for the one that the dialog is about.
void DrawDialogButton(const DRAWITEMSTRUCT& item, HFONT font, int dpi, bool primary,
                      const UiLanguageColors& colors);

}  // namespace qv
