#pragma once

#include <oaidl.h>

#include <cstddef>

#include "foundation/variant.h"

namespace qv {

/// The object that an automation call passes for a declared parameter (0 = first), whether the caller names
/// its arguments or not, by value or by reference; null when it passes none or something else. `params` may
/// be null.
[[nodiscard]] ComPtr<IDispatch> ObjectArgument(const DISPPARAMS* params, std::size_t parameter);

}  // namespace qv
