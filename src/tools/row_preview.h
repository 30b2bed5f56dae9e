#pragma once

#include <oaidl.h>

#include <optional>
#include <span>

#include "foundation/variant.h"
#include "tools/blank_rows.h"
#include "tools/kept_view.h"
#include "tools/row_highlight.h"
#include "workbook/range_geometry.h"

namespace qv {

/// Shows rows of a sheet for the time of a question, highlighted and selected, and then puts fills,
/// selection, active cell and scrolling back. Keeps what a busy host does not take, to be tried again. Host
/// UI thread.
class RowPreview {
 public:
  /// `selection` is what is put back; without it (null) nothing is selected. `window` may be null.
  void Show(IDispatch* application, IDispatch* sheet, const RangeGeometry& used,
            std::span<const std::int32_t> rows, ComPtr<IDispatch> selection, IDispatch* window);

  /// Fills first, then the view. False when the host refused some, which can be tried again.
  [[nodiscard]] bool Restore();

  /// Gives up what could not be put back, and every object of the host.
  void Forget();

 private:
  RowHighlight fills_;
  std::optional<KeptView> view_;
};

}  // namespace qv
