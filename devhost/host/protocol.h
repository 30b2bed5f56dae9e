#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace qv::devhost {

/// Member order is kept: a page message is passed on as it was written.
using Json = nlohmann::ordered_json;

/// Longest line that is read, in bytes.
inline constexpr std::size_t kMaximumLineBytes = 4u << 20;
/// Deepest nesting of objects and arrays in a line, the line's own object included.
inline constexpr int kMaximumDepth = 64;
/// Longest `timeoutMs`, ten minutes.
inline constexpr std::int64_t kMaximumTimeoutMs = 600'000;

/// One command, checked: every required member is there and each has its type.
struct Command {
  std::string name;
  Json members;
  /// Whether it can run while a box of the add-in keeps the host in a message loop of its own.
  bool isSafeInBoxes = false;
};

/// The command of one line, or nothing and a text in `error` that says exactly what is wrong with it.
[[nodiscard]] std::optional<Command> ParseCommand(std::string_view line, std::string& error);

/// {"ok":false,"error":…}
[[nodiscard]] Json ErrorAnswer(const std::string& error);

/// One line of UTF-8 without its line end. Text that is no UTF-8 is repaired rather than refused.
[[nodiscard]] std::string ToLine(const Json& answer);

}  // namespace qv::devhost
