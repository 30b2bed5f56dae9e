#pragma once

#include <oaidl.h>

#include <optional>

#include "foundation/variant.h"

namespace qv::devhost {

/// An object-valued property by name; null when it is missing, fails or is no object.
[[nodiscard]] ComPtr<IDispatch> GetObjectProperty(IDispatch* object, const wchar_t* name);

/// A whole number by name; nothing when it is missing, fails or is none.
[[nodiscard]] std::optional<long> GetNumberProperty(IDispatch* object, const wchar_t* name);

}  // namespace qv::devhost
