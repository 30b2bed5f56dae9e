#include "engines/memory/engine_input.h"

#include "foundation/text.h"

namespace qv::devhost {

std::vector<memory::Area> AreasAt(std::string_view address) {
  auto areas = memory::ParseAddress(FromUtf8(address));
  if (!areas) throw std::runtime_error("not an address: " + std::string(address));
  return std::move(*areas);
}

memory::Area CellAt(std::string_view address) {
  const auto areas = AreasAt(address);
  if (areas.size() != 1 || areas.front().Cells() != 1) {
    throw std::runtime_error("not one cell: " + std::string(address));
  }
  return areas.front();
}

}  // namespace qv::devhost
