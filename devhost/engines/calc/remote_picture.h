#pragma once

#include <nlohmann/json.hpp>

namespace qv::devhost::calc {

/// Whether the office's answer is a picture for the clipboard rather than a value.
[[nodiscard]] bool IsPicture(const nlohmann::json& answer);

/// Puts the picture on the clipboard in place of what is there, on white. False when it is no picture, or the
/// clipboard cannot be had.
[[nodiscard]] bool PutOnClipboard(const nlohmann::json& answer);

}  // namespace qv::devhost::calc
