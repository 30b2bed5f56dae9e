#pragma once

#include <oaidl.h>

#include <span>
#include <vector>

#include "foundation/variant.h"
#include "tools/blank_rows.h"
#include "tools/fill_survey.h"
#include "workbook/range_geometry.h"

namespace qv {

/// Paints rows of a sheet for the time of a question, and gives every cell its former fill again. Cells whose
/// fill could not be put back exactly are not painted: those with a pattern or a gradient, and merged ones.
/// Host UI thread.
class RowHighlight {
 public:
  RowHighlight() = default;
  RowHighlight(const RowHighlight&) = delete;
  RowHighlight& operator=(const RowHighlight&) = delete;
  /// Tries once more what is still painted.
  ~RowHighlight();

  /// Paints the columns of the used range in ascending runs of rows, as far as the host lets it.
  void Paint(IDispatch* sheet, const RangeGeometry& used, std::span<const RowSpan> rows);

  /// Puts the former fills back. False when the host refused some, which can be tried again.
  [[nodiscard]] bool Restore();

  /// Gives up what could not be put back.
  void Forget() { painted_.clear(); }

 private:
  struct Painted {
    ComPtr<IDispatch> range;
    CellFill former;
  };

  std::vector<Painted> painted_;
};

}  // namespace qv
