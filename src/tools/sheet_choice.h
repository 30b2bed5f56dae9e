#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/tool_arguments.h"

namespace qv {

/// The sheet that "name" and "index" ask for; a name goes first.
struct SheetChoice {
  std::wstring name;
  /// 1-based where it can mean a sheet; any other number, and 0 for what is no whole number, means none.
  std::optional<std::int32_t> index;

  [[nodiscard]] bool IsGiven() const { return !name.empty() || index.has_value(); }
};

/// The object's own name, else its own index, else what the whole text says of them. An index of null is
/// none.
[[nodiscard]] SheetChoice ParseSheetChoice(const ToolArguments& arguments);

}  // namespace qv
