#include "workbook/cell_finder.h"

namespace qv {

CellTarget CellFinder::Find(std::wstring_view sheetName, std::int32_t row, std::int32_t col) {
  CellTarget place;
  if (sheet_ != nullptr && sheetName_ == sheetName) {
    place.sheet = sheet_;
    place.cell = GetCellDispatch(sheet_.Get(), row, col);
    if (place.cell != nullptr) return place;
  }
  // The whole way also tells how the host refuses.
  place = FindCell(target_, sheetName, row, col);
  sheet_ = place.sheet;
  sheetName_ = sheetName;
  return place;
}

void CellFinder::ReleaseReferences() {
  sheet_ = nullptr;
  sheetName_.clear();
}

}  // namespace qv
