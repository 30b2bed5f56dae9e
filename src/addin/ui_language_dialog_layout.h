#pragma once

namespace qv {

/// A rectangle in pixels of the dialog's client area.
struct DialogArea {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  [[nodiscard]] int Right() const { return left + width; }
  [[nodiscard]] int Bottom() const { return top + height; }
};

/// Where everything in the language dialog stands, in pixels.
struct UiLanguageDialogLayout {
  int width = 0;
  int height = 0;
  DialogArea title;
  DialogArea body;
  /// Border drawn around the list.
  DialogArea frame;
  DialogArea list;
  /// Height of one row of the list.
  int rowHeight = 0;
  DialogArea ok;
  DialogArea cancel;
};

/// Width available to the body text at that DPI; its height is measured with it.
[[nodiscard]] int UiLanguageDialogTextWidth(int dpi);

/// `bodyHeight` is the measured height of the wrapped body text and `maxHeight` what the screen has room for,
/// both in pixels. A list too long for the screen gets fewer rows and scrolls, but never less than three.
[[nodiscard]] UiLanguageDialogLayout LayOutUiLanguageDialog(int dpi, int bodyHeight, int maxHeight);

}  // namespace qv
