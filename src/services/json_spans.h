#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

// Where things stand in a JSON file that belongs to somebody else, so that one part of it can be changed and
// every other byte stays. The whole text is checked by JSON's grammar, without a nesting limit and without
// recursion; bytes that are no valid UTF-8 are left to those who read the file.

/// A part of a text: from `begin` up to, not including, `end`; both 0-based byte offsets.
struct JsonSpan {
  std::size_t begin = 0;
  std::size_t end = 0;

  [[nodiscard]] std::string_view In(std::string_view text) const { return text.substr(begin, end - begin); }
};

/// One member of an object. Both parts of a string include its quotation marks.
struct JsonMemberSpan {
  JsonSpan name;
  JsonSpan value;
};

/// An object, from its opening to its closing brace.
struct JsonObjectSpan {
  JsonSpan braces;
  std::vector<JsonMemberSpan> members;
};

/// The object that `text` is; white space around it does not count. Nothing when it is no valid JSON object.
[[nodiscard]] std::optional<JsonObjectSpan> JsonObjectIn(std::string_view text);

/// The same for a part of a text; the offsets are those of the whole.
[[nodiscard]] std::optional<JsonObjectSpan> JsonObjectIn(std::string_view text, JsonSpan part);

/// The member with that name, null when there is none. Of several the last one, which is the one that readers
/// of JSON take.
[[nodiscard]] const JsonMemberSpan* JsonMemberNamed(std::string_view text, const JsonObjectSpan& object,
                                                    std::string_view name);

/// The text that stands in nested objects under these names; nothing when it is absent or no string.
[[nodiscard]] std::optional<std::string> JsonStringAt(std::string_view text,
                                                      std::initializer_list<std::string_view> names);

}  // namespace qv
