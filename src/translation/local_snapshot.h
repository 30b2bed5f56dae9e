#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "translation/glossary_entries.h"

namespace qv {

// The user's glossaries and instructions as they are kept on this computer, one JSON file each.

struct StoredGlossary {
  /// The file's name without its extension.
  std::wstring id;
  std::wstring name;
  /// JSON text of a string, number or word, as the page stored it.
  std::wstring updatedAt;
  std::vector<StoredEntry> entries;
};

struct StoredInstruction {
  std::wstring id;
  std::wstring name;
  std::wstring content;
  /// See `StoredGlossary`.
  std::wstring updatedAt;
};

/// Reads a glossary's file, UTF-8 with or without a byte order mark. Nothing when it is malformed: no UTF-8,
/// no JSON object, or without its "meta" object or its "entries" array.
[[nodiscard]] std::optional<StoredGlossary> ParseGlossaryFile(std::wstring_view id, std::string_view bytes);

/// The same for an instruction, whose "content" text must be there.
[[nodiscard]] std::optional<StoredInstruction> ParseInstructionFile(std::wstring_view id,
                                                                    std::string_view bytes);

/// The id that a file's name stands for; nothing for a name that is no item's.
[[nodiscard]] std::optional<std::wstring> ItemIdOf(std::wstring_view fileName);

struct LocalSnapshot {
  std::vector<StoredGlossary> glossaries;
  std::vector<StoredInstruction> instructions;
};

/// The data of the answer to "exportLocalSnapshot".
[[nodiscard]] std::wstring LocalSnapshotData(const LocalSnapshot& snapshot);

}  // namespace qv
