#include "tools/whole_number.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/tool_arguments.h"

namespace qv {

std::optional<std::int32_t> WholeNumberOfValue(std::wstring_view value) {
  const std::optional<double> number = NumberOfValue(value);
  if (!number || *number != std::trunc(*number)) return std::nullopt;
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp(*number, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

}  // namespace qv
