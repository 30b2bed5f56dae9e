#pragma once

#include <oaidl.h>

#include "foundation/variant.h"

namespace qv {

/// The charts of a sheet; null when the host has none to offer. "ChartObjects" is a method in Excel; other
/// hosts offer it as a property. Host UI thread.
[[nodiscard]] ComPtr<IDispatch> ChartObjectsOf(IDispatch* sheet);

}  // namespace qv
