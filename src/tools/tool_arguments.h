#pragma once

#include "foundation/json_reader.h"

namespace qv {

/// The argument text of a tool.
using ToolArguments = JsonReader;

}  // namespace qv
