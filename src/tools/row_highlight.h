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

  /// Paints the columns of the used range in ascending runs of rows, as far as the host lets it. Nothing
  /// while it does not let earlier paint be taken off.
  void Paint(IDispatch* sheet, const RangeGeometry& used, std::span<const RowSpan> rows);

  /// Puts the former fills back, those painted last first, and ends at the first that the host refuses. False
  /// then: it can be tried again. Cells that are there no longer are owed nothing.
  [[nodiscard]] bool Restore();

  /// Gives up what could not be put back.
  void Forget() { painted_.clear(); }

 private:
  struct Painted {
    ComPtr<IDispatch> range;
    CellFill former;
  };

  /// Takes the last piece off the list when it is still that of this range: a host may run messages inside a
  /// call, and with them another restore.
  void DropLast(IDispatch* range);

  std::vector<Painted> painted_;
};

}  // namespace qv
