#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace qv {

/// Where the argument array of an automation call holds one declared parameter (0 = first). Named arguments
/// come first in the array, each with its parameter's number; the positional ones follow in reversed order.
/// Excel names every argument of its events, other callers name none, so assuming either alone swaps the
/// parameters. Nothing when the parameter was not passed.
[[nodiscard]] std::optional<std::size_t> ArgumentIndex(std::size_t parameter, std::size_t argumentCount,
                                                       std::span<const std::int32_t> namedParameters);

}  // namespace qv
