#include "addin/blank_rows_command.h"

#include "foundation/logging.h"

namespace qv {

// The removal itself is not built yet: the press is logged, and the sheet stays as it is.
void RunBlankRowRemoval(HWND) {
  PaneLog(L"Excel DeleteBlankRowsClicked\r\n");
}

}  // namespace qv
