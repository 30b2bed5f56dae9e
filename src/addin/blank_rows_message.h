#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/blank_rows.h"

namespace qv {

/// One message box: its text, and its icon as the MB_ICON… flag.
struct BlankRowMessage {
  std::wstring text;
  unsigned icon = 0;
};

/// The preview's question about so many blank rows.
[[nodiscard]] std::wstring BlankRowQuestion(std::wstring_view language, std::int32_t found);

/// What the user is told of a removal; nothing where the rows that are gone say it, or where the user said
/// no. `language` is a code of the catalog.
[[nodiscard]] std::optional<BlankRowMessage> BlankRowOutcome(std::wstring_view language,
                                                             const BlankRowResult& result);

}  // namespace qv
