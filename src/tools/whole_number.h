#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace qv {

/// The number that a value's text says, however it is spelled (1e3 is 1000), saturated to 32 bits; nothing
/// for a fraction and for what is no number.
[[nodiscard]] std::optional<std::int32_t> WholeNumberOfValue(std::wstring_view value);

}  // namespace qv
