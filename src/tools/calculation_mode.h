#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace qv {

/// The host's number (XlCalculation) for "manual", "automatic" or "semiautomatic", as written; nothing for
/// any other word.
[[nodiscard]] std::optional<std::int32_t> CalculationModeOf(std::wstring_view word);

/// The word of the host's number; "unknown" for any other.
[[nodiscard]] std::wstring_view CalculationWordOf(std::int32_t mode);

}  // namespace qv
