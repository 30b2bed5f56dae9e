#pragma once

#include "host/command_line.h"

namespace qv::devhost {

/// Points the add-in's settings file of the current user at the service; its other members stay. Throws
/// std::runtime_error when the file cannot be read or written: without it the add-in would use the built-in
/// service.
void WriteServiceAddress(const ServiceAddress& service);

}  // namespace qv::devhost
