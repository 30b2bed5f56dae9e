#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace qv {

// Dispatch ids that the connection tells apart from the others.
inline constexpr std::int32_t kRibbonGetImage = 108;
inline constexpr std::int32_t kRibbonOnLoad = 130;
inline constexpr std::int32_t kRibbonGetLabel = 131;
inline constexpr std::int32_t kRibbonGetScreentip = 132;

/// Dispatch id of a ribbon callback by its name (case matters).
[[nodiscard]] std::optional<std::int32_t> RibbonDispId(std::wstring_view name);

/// Whether an id belongs to a ribbon callback.
[[nodiscard]] bool IsRibbonDispId(std::int32_t id);

}  // namespace qv
