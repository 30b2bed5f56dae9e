#include "translation/local_snapshot.h"

#include <utility>

#include "foundation/json_parts.h"
#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::wstring_view kItemExtension = L".json";

/// A file in another encoding would give the page damaged words, which it may keep.
std::optional<std::wstring> TextOfFile(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  std::wstring text = FromUtf8(bytes);
  return ToUtf8(text) == bytes ? std::optional(std::move(text)) : std::nullopt;
}

/// The value goes into a script as it stands; strings are written anew, so that they are whole.
std::wstring UpdatedAtOf(const JsonMembers& members) {
  if (const std::optional<std::wstring> text = JsonStringOf(members, L"updatedAt")) return JsonQuote(*text);
  const std::wstring_view value = JsonValueOf(members, L"updatedAt");
  const bool scalar = !value.empty() && value.front() != L'{' && value.front() != L'[';
  return std::wstring(scalar ? value : L"null");
}

std::wstring EntryJson(const StoredEntry& entry) {
  return Concat(L"{\"source\":", JsonQuote(entry.terms.source), L",\"target\":",
                JsonQuote(entry.terms.target), L",\"note\":", JsonQuote(entry.terms.note), L",\"enabled\":",
                BoolWord(entry.enabled), L'}');
}

template <typename Item, typename Write>
std::wstring JoinedArray(const std::vector<Item>& items, const Write& write) {
  std::wstring out = L"[";
  for (const Item& item : items) {
    if (out.size() > 1) out += L',';
    out += write(item);
  }
  out += L']';
  return out;
}

std::wstring GlossaryJson(const StoredGlossary& glossary) {
  return Concat(L"{\"id\":", JsonQuote(glossary.id), L",\"name\":", JsonQuote(glossary.name),
                L",\"updatedAt\":", glossary.updatedAt, L",\"entries\":",
                JoinedArray(glossary.entries, EntryJson), L'}');
}

std::wstring InstructionJson(const StoredInstruction& instruction) {
  return Concat(L"{\"id\":", JsonQuote(instruction.id), L",\"name\":", JsonQuote(instruction.name),
                L",\"content\":", JsonQuote(instruction.content), L",\"updatedAt\":", instruction.updatedAt,
                L'}');
}

}  // namespace

std::optional<StoredGlossary> ParseGlossaryFile(std::wstring_view id, std::string_view bytes) {
  const std::optional<std::wstring> text = TextOfFile(bytes);
  const std::optional<JsonMembers> members = text ? JsonMembersOf(*text) : std::nullopt;
  if (!members) return std::nullopt;
  const std::optional<JsonMembers> meta = JsonMembersOf(JsonValueOf(*members, L"meta"));
  auto entries = ParseEntries(JsonValueOf(*members, L"entries"));
  if (!meta || !entries) return std::nullopt;
  return StoredGlossary{std::wstring(id), JsonStringOf(*meta, L"name").value_or(L""), UpdatedAtOf(*meta),
                        std::move(*entries)};
}

std::optional<StoredInstruction> ParseInstructionFile(std::wstring_view id, std::string_view bytes) {
  const std::optional<std::wstring> text = TextOfFile(bytes);
  const std::optional<JsonMembers> members = text ? JsonMembersOf(*text) : std::nullopt;
  if (!members) return std::nullopt;
  std::optional<std::wstring> content = JsonStringOf(*members, L"content");
  if (!content) return std::nullopt;
  return StoredInstruction{std::wstring(id), JsonStringOf(*members, L"name").value_or(L""),
                           std::move(*content), UpdatedAtOf(*members)};
}

std::optional<std::wstring> ItemIdOf(std::wstring_view fileName) {
  if (fileName.size() <= kItemExtension.size()) return std::nullopt;
  const std::size_t length = fileName.size() - kItemExtension.size();
  // A search for "*.json" also finds longer extensions by their short names.
  if (!EqualsIgnoreAsciiCase(fileName.substr(length), kItemExtension)) return std::nullopt;
  return std::wstring(fileName.substr(0, length));
}

std::wstring LocalSnapshotData(const LocalSnapshot& snapshot) {
  return Concat(L"{\"glossaries\":", JoinedArray(snapshot.glossaries, GlossaryJson), L",\"instructions\":",
                JoinedArray(snapshot.instructions, InstructionJson), L'}');
}

}  // namespace qv
