#pragma once

#include <windows.h>

namespace qv {

/// Registers the add-in for the current user: classes, type library, Excel's add-in key, and then, best
/// effort, WPS's list of allowed add-ins. The first failure, with what came before it left in place.
[[nodiscard]] HRESULT RegisterAddIn();

/// Takes all of it away; what is missing already is no failure. What cannot be taken away does not keep the
/// rest; the first failure.
[[nodiscard]] HRESULT UnregisterAddIn();

}  // namespace qv
