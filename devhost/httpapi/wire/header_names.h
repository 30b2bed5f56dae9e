#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace qv::devhost {

// Numbers of HTTP_HEADER_ID and HTTP_VERB (http.h): requests and responses share the first twenty headers.

inline constexpr std::size_t kRequestHeaders = 41;
inline constexpr std::size_t kResponseHeaders = 30;

/// HTTP_HEADER_ID of a request header's name, in any case; nothing for an unknown header.
[[nodiscard]] std::optional<std::size_t> RequestHeaderId(std::string_view name);

/// The name of a known response header; `id` is below `kResponseHeaders`.
[[nodiscard]] std::string_view ResponseHeaderName(std::size_t id);

inline constexpr int kUnknownVerb = 1;

/// HTTP_VERB of a method, which is case-sensitive; `kUnknownVerb` for any other text.
[[nodiscard]] int VerbNumber(std::string_view method);

/// Equality without regard to the case of ASCII letters.
[[nodiscard]] bool SameName(std::string_view left, std::string_view right);

}  // namespace qv::devhost
