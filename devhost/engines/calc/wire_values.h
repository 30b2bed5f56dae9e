#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "engines/calc/remote_session.h"
#include "foundation/variant.h"

namespace qv::devhost::calc {

/// The wire form of an argument; by-reference ones travel by value. Objects must be this session's own.
/// Throws std::invalid_argument for a value that the office could not understand.
[[nodiscard]] nlohmann::json ToWire(const VARIANT& value, const RemoteSession* session);

/// The VARIANT for a wire form; an object becomes a proxy. Two-dimensional arrays have lower bounds of 1 and
/// are filled up with empty elements to the size that the office gives.
[[nodiscard]] Variant FromWire(const nlohmann::json& value, const std::shared_ptr<RemoteSession>& session);

}  // namespace qv::devhost::calc
