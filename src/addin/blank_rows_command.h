#pragma once

#include <oaidl.h>

#include <cstdint>
#include <string_view>

#include "foundation/ui_timer.h"
#include "tools/blank_rows.h"
#include "tools/row_preview.h"

namespace qv {

/// The ribbon's button that removes blank rows: the question, the report, and what a busy host did not
/// let be put back. Host UI thread.
class BlankRowsCommand {
 public:
  /// Removes the blank rows of the window in which the control (may be null) was pressed. Runs messages while
  /// a box is open; a press that comes meanwhile does nothing.
  void Press(IDispatch* control);

  /// Lets go of the host's objects at the end of the connection. A box that is open then decides nothing any
  /// more.
  void Release();

 private:
  [[nodiscard]] BlankRowResult Remove(IDispatch* control, std::wstring_view language);
  [[nodiscard]] bool Confirm(std::wstring_view language, std::int32_t found) const;
  /// Puts back later what the host refuses now, a bounded number of times; then the next press does.
  void TryLater(int triesLeft);

  bool running_ = false;
  /// The connection has ended since the press.
  bool released_ = false;
  /// Also what earlier presses have still to put back.
  RowPreview preview_;
  UiTimer nextTry_;
};

}  // namespace qv
