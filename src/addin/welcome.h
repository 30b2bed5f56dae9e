#pragma once

#include <functional>

#include "addin/welcome_marks.h"

namespace qv {

/// Offers the first-run welcome when it is due and the user is looking at the host's window: Yes opens the
/// ribbon tab and, with `showLogin`, the login page. It counts as shown after No, or when the login page was
/// shown. Runs messages while its box is open; while one is open, another call does nothing. Host UI thread,
/// from a timer.
void ShowFirstRunWelcome(const std::function<bool()>& showLogin);

}  // namespace qv
