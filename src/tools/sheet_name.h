#pragma once

#include <string>
#include <string_view>

namespace qv {

/// Longest sheet name that hosts take, in UTF-16 units.
inline constexpr std::size_t kMaxSheetName = 31;

/// The last number that is tried behind a name that is taken; the first is 2, so there are 50.
inline constexpr int kLastNameNumber = 51;

/// A name that hosts take, made from any text: without : \ / ? * [ ], without blanks and apostrophes around
/// it, no longer than allowed; "Sheet" when nothing is left.
[[nodiscard]] std::wstring CleanSheetName(std::wstring_view text);

/// "Name (2)". A name that is too long for the number behind it is cut.
[[nodiscard]] std::wstring NumberedSheetName(std::wstring_view name, int number);

}  // namespace qv
