#pragma once

#include <string>
#include <string_view>

namespace qv {

enum class QuickWriteMode {
  kUnknown,
  /// The text takes the place of what the cell holds.
  kReplace,
  /// The text becomes a new last line of the cell.
  kInsert,
};

/// The page's wish to have a translated text put into the sheet.
struct QuickWriteRequest {
  QuickWriteMode mode = QuickWriteMode::kUnknown;
  std::wstring text;

  /// An unknown mode or an empty text changes nothing.
  [[nodiscard]] bool WritesAnything() const { return mode != QuickWriteMode::kUnknown && !text.empty(); }
};

/// Reads a "quickTranslateWrite" message.
[[nodiscard]] QuickWriteRequest ParseQuickWrite(std::wstring_view message);

/// What a cell that shows `former` holds after a text was inserted: a new line, or just the text in a cell
/// that shows nothing but blanks.
[[nodiscard]] std::wstring InsertedText(std::wstring_view former, std::wstring_view text);

}  // namespace qv
