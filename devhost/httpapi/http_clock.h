#pragma once

#include "httpapi/wire/response_head.h"

namespace qv::devhost {

/// Now, for the header Date.
[[nodiscard]] HttpDate HttpNow();

}  // namespace qv::devhost
