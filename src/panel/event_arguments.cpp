#include "panel/event_arguments.h"

namespace qv {

std::optional<std::size_t> ArgumentIndex(std::size_t parameter, std::size_t argumentCount,
                                         std::span<const std::int32_t> namedParameters) {
  if (namedParameters.size() > argumentCount) return std::nullopt;
  for (std::size_t index = 0; index < namedParameters.size(); ++index) {
    if (namedParameters[index] >= 0 && static_cast<std::size_t>(namedParameters[index]) == parameter) {
      return index;
    }
  }
  if (parameter >= argumentCount) return std::nullopt;
  const std::size_t positional = argumentCount - 1 - parameter;
  return positional >= namedParameters.size() ? std::optional(positional) : std::nullopt;
}

}  // namespace qv
