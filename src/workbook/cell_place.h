#pragma once

#include <cstdint>

namespace qv {

/// Where one cell of a sheet stands, 1-based.
struct CellPlace {
  std::int32_t row = 0;
  std::int32_t col = 0;

  friend bool operator==(const CellPlace&, const CellPlace&) = default;
};

}  // namespace qv
