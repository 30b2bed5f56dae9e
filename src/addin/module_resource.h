#pragma once

#include <optional>
#include <string_view>

namespace qv {

/// The bytes of a resource of this module; nothing when it is missing. `type` is a name or a predefined type
/// such as RT_RCDATA. The bytes live as long as the module.
[[nodiscard]] std::optional<std::string_view> ModuleResource(int id, const wchar_t* type);

}  // namespace qv
