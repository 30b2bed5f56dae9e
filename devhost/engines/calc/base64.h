#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qv::devhost::calc {

[[nodiscard]] std::string Base64(std::string_view bytes);

/// The bytes of a text that is base64; nothing of one that is not.
[[nodiscard]] std::vector<unsigned char> FromBase64(const std::string& text);

}  // namespace qv::devhost::calc
