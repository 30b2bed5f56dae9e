#include "translation/glossary_entries.h"

#include "foundation/json_parts.h"

namespace qv {

std::optional<std::vector<StoredEntry>> ParseEntries(std::wstring_view array) {
  const auto elements = JsonElementsOf(array);
  if (!elements) return std::nullopt;
  std::vector<StoredEntry> entries;
  for (const std::wstring_view element : *elements) {
    const std::optional<JsonMembers> members = JsonMembersOf(element);
    if (!members) continue;
    const auto text = [&](std::wstring_view name) { return JsonStringOf(*members, name).value_or(L""); };
    entries.push_back(
        {{text(L"source"), text(L"target"), text(L"note")}, JsonValueOf(*members, L"enabled") != L"false"});
  }
  return entries;
}

}  // namespace qv
