#pragma once

#include <oaidl.h>

#include "foundation/variant.h"

namespace qv::devhost {

/// An object-valued property by name; null when it is missing, fails or is no object.
[[nodiscard]] ComPtr<IDispatch> GetObjectProperty(IDispatch* object, const wchar_t* name);

}  // namespace qv::devhost
