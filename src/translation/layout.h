#pragma once

namespace qv {

/// How translations are put into cells.
enum class Layout {
  /// The translation takes the place of the cell's text; the cell keeps its formatting.
  kTarget,
  /// The cell keeps its text and gets the translation as a new last line, which alone is styled.
  kDual,
};

}  // namespace qv
