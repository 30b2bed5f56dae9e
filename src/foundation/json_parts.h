#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

// Where values are the user's own words, a search for a quoted key may find a value instead. These readers
// take one level of a value apart by JSON's grammar; they know no nesting limit and never recurse.

/// One member of an object: its decoded name and its value's text, which points into the object's.
struct JsonMember {
  std::wstring name;
  std::wstring_view value;
};

using JsonMembers = std::vector<JsonMember>;

/// The members of an object in their order; nothing when the text is no JSON object. What stands inside
/// nested values is checked for balance only.
[[nodiscard]] std::optional<JsonMembers> JsonMembersOf(std::wstring_view object);

/// The same for the elements of an array.
[[nodiscard]] std::optional<std::vector<std::wstring_view>> JsonElementsOf(std::wstring_view array);

/// The value's text of the first member with that name; empty when there is none.
[[nodiscard]] std::wstring_view JsonValueOf(const JsonMembers& members, std::wstring_view name);

/// The value's text behind the first occurrence of the quoted name that a colon follows, wherever in a text
/// that need not be JSON; empty when there is none, or what follows is no value.
[[nodiscard]] std::wstring_view JsonFindValue(std::wstring_view text, std::wstring_view name);

/// The decoded value of a string member; nothing when it is absent or no string.
[[nodiscard]] std::optional<std::wstring> JsonStringOf(const JsonMembers& members, std::wstring_view name);

}  // namespace qv
