#pragma once

#include <oaidl.h>

#include "foundation/ui_timer.h"
#include "tools/row_highlight.h"

namespace qv {

/// The ribbon's button that removes blank rows: the question, the report, and fills that a busy host did not
/// let be put back. Host UI thread.
class BlankRowsCommand {
 public:
  /// Removes the blank rows of the window in which the control (may be null) was pressed. Runs messages while
  /// a box is open; a press that comes meanwhile does nothing.
  void Press(IDispatch* control);

  /// Lets go of the host's objects at the end of the connection.
  void Release();

 private:
  /// Puts back later what the host refuses now, a bounded number of times.
  void TryLater(int triesLeft);

  bool running_ = false;
  /// Also fills of earlier presses that are still to be put back.
  RowHighlight preview_;
  UiTimer nextTry_;
};

}  // namespace qv
