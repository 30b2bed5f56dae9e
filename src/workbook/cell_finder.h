#pragma once

#include <oaidl.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/variant.h"
#include "workbook/cell_access.h"
#include "workbook/target_context.h"

namespace qv {

/// Finds cells one after the other; neighbours share their sheet. Rows and columns are 1-based. Host UI
/// thread.
class CellFinder {
 public:
  /// Outlives the finder.
  explicit CellFinder(const TargetContext& target) : target_(target) {}

  [[nodiscard]] CellTarget Find(std::wstring_view sheetName, std::int32_t row, std::int32_t col);
  /// Lets go of the sheet.
  void ReleaseReferences();

 private:
  const TargetContext& target_;
  std::wstring sheetName_;
  ComPtr<IDispatch> sheet_;
};

}  // namespace qv
