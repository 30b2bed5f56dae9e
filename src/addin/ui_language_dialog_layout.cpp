#include "addin/ui_language_dialog_layout.h"

#include <algorithm>

#include "foundation/dpi.h"

namespace qv {
namespace {

// Lengths at 96 DPI.
constexpr int kWidth = 420;
constexpr int kMargin = 24;
constexpr int kTitleHeight = 28;
constexpr int kTitleToBody = 8;
constexpr int kLeastBodyHeight = 40;
constexpr int kBodyToList = 16;
constexpr int kListPadding = 6;
constexpr int kRowHeight = 34;
constexpr int kListToButtons = 20;
constexpr int kButtonWidth = 92;
constexpr int kButtonHeight = 36;
constexpr int kButtonGap = 8;
constexpr int kBottom = 22;

constexpr int kRows = 8;
constexpr int kLeastRows = 3;

}  // namespace

int UiLanguageDialogTextWidth(int dpi) {
  return ScaleToDpi(kWidth, dpi) - 2 * ScaleToDpi(kMargin, dpi);
}

UiLanguageDialogLayout LayOutUiLanguageDialog(int dpi, int bodyHeight, int maxHeight) {
  const auto px = [dpi](int length) { return ScaleToDpi(length, dpi); };
  const int left = px(kMargin);
  const int inner = UiLanguageDialogTextWidth(dpi);
  UiLanguageDialogLayout layout;
  layout.width = px(kWidth);
  layout.rowHeight = px(kRowHeight);
  layout.title = {left, px(kMargin), inner, px(kTitleHeight)};
  layout.body = {left, layout.title.Bottom() + px(kTitleToBody), inner,
                 std::max(bodyHeight, px(kLeastBodyHeight))};

  const int frameTop = layout.body.Bottom() + px(kBodyToList);
  const int belowFrame = px(kListToButtons) + px(kButtonHeight) + px(kBottom);
  const int room = maxHeight - frameTop - 2 * px(kListPadding) - belowFrame;
  const int rows = std::clamp(room / layout.rowHeight, kLeastRows, kRows);
  const int padding = px(kListPadding);
  layout.frame = {left, frameTop, inner, rows * layout.rowHeight + 2 * padding};
  layout.list = {left + padding, frameTop + padding, inner - 2 * padding, rows * layout.rowHeight};

  const int buttonTop = layout.frame.Bottom() + px(kListToButtons);
  const int buttonWidth = px(kButtonWidth);
  layout.cancel = {left + inner - buttonWidth, buttonTop, buttonWidth, px(kButtonHeight)};
  layout.ok = {layout.cancel.left - px(kButtonGap) - buttonWidth, buttonTop, buttonWidth, px(kButtonHeight)};
  layout.height = layout.ok.Bottom() + px(kBottom);
  return layout;
}

}  // namespace qv
