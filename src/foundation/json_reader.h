#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/json_parts.h"

namespace qv {

/// A JSON text that someone else wrote and that should be an object: the arguments of a tool, a request of an
/// agent. A member is looked for in the object itself first, so that a cell's value or a member of a nested
/// object is not mistaken for it, and then wherever its quoted name occurs in the text, as in any message.
/// Absent and differently typed members read as their default.
class JsonReader {
 public:
  /// Borrows the text. A text that is no object is only searched.
  explicit JsonReader(std::wstring_view json);

  /// Whether the text is an object; else it is only searched.
  [[nodiscard]] bool IsObject() const { return members_.has_value(); }

  /// The text of the value of one of the object's own members; empty when there is none, or it is null. In a
  /// text that is no object the first such member anywhere.
  [[nodiscard]] std::wstring_view Value(std::wstring_view name) const;

  /// The decoded text of a string; empty for any other value.
  [[nodiscard]] std::wstring Text(std::wstring_view name) const;
  /// The leading decimal integer, saturated to 32 bits; 0 when there is none, as in a quoted number.
  [[nodiscard]] std::int32_t Integer(std::wstring_view name) const;
  /// The text of an object; empty for any other value.
  [[nodiscard]] std::wstring_view Object(std::wstring_view name) const;

 private:
  [[nodiscard]] std::wstring_view ValueOrNull(std::wstring_view name) const;

  std::wstring_view json_;
  std::optional<JsonMembers> members_;
};

// What a value's text says, by the same rules.

/// The decoded text of a string value; nothing for any other value.
[[nodiscard]] std::optional<std::wstring> TextOfValue(std::wstring_view value);
/// The leading decimal integer, saturated to 32 bits; 0 when there is none, as in a quoted number.
[[nodiscard]] std::int32_t IntegerOfValue(std::wstring_view value);
/// A finite number; nothing for any other value.
[[nodiscard]] std::optional<double> NumberOfValue(std::wstring_view value);
/// true or false, 1 counting as true and 0 as false; nothing for any other value.
[[nodiscard]] std::optional<bool> FlagOfValue(std::wstring_view value);

}  // namespace qv
