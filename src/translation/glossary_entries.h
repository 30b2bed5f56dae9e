#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "translation/translate_request.h"

namespace qv {

/// An entry as it is kept. A disabled one stays in its glossary but is not used.
struct StoredEntry {
  GlossaryEntry terms;
  bool enabled = true;
};

/// Reads an array of entries: elements that are no objects are left out, an absent text is empty, and an
/// entry is enabled unless it says false. Nothing when the text is no array.
[[nodiscard]] std::optional<std::vector<StoredEntry>> ParseEntries(std::wstring_view array);

}  // namespace qv
