#pragma once

#include "workbook/automation.h"

namespace qv {

/// Whether a failure means that the object that was asked is there no longer.
[[nodiscard]] bool IsObjectGone(const HostAnswer& answer);

}  // namespace qv
