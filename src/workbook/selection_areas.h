#pragma once

#include <oaidl.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "foundation/variant.h"
#include "workbook/range_geometry.h"

namespace qv {

/// The rectangular ranges of a selection of cells, in the order of its "Areas"; they may overlap. Host UI
/// thread.
class SelectionRanges {
 public:
  /// Null is allowed: then the one range is null.
  explicit SelectionRanges(const ComPtr<IDispatch>& selection);

  /// 1 at least, also where the host has no areas.
  [[nodiscard]] std::int32_t Count() const { return count_; }
  /// By 1-based number; null when the host does not give it.
  [[nodiscard]] ComPtr<IDispatch> At(std::int32_t number) const;

 private:
  ComPtr<IDispatch> selection_;
  ComPtr<IDispatch> collection_;
  std::int32_t count_;
};

/// One rectangle of a selection.
struct SelectionArea {
  ComPtr<IDispatch> range;
  RangeGeometry geometry;
};

enum class SelectionRead { kRead, kUnreadable, kTooLarge };

/// For a selection of any size.
inline constexpr std::int64_t kAnyCellCount = std::numeric_limits<std::int64_t>::max();

/// Whether what is selected is of cells, and not a chart or a picture. Null is allowed. Host UI thread.
[[nodiscard]] bool IsCellRange(IDispatch* selection);

/// Fills `areas` with the rectangles of a selection of cells. `maxCells` limits the cells of all together,
/// overlaps counted each time; what is beyond it is not asked for. Host UI thread.
[[nodiscard]] SelectionRead ReadSelectionAreas(const ComPtr<IDispatch>& selection, std::int64_t maxCells,
                                               std::vector<SelectionArea>& areas);

}  // namespace qv
