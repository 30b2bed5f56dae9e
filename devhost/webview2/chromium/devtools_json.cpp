#include "webview2/chromium/devtools_json.h"

#include <charconv>
#include <optional>

namespace qv::devhost {
namespace {

constexpr std::size_t kEscapeLength = 6;

/// The UTF-16 unit of an escape "\uXXXX" at `at`.
std::optional<unsigned> UnitAt(const std::string& text, std::size_t at) {
  if (text.size() < at + kEscapeLength || text[at] != '\\' || text[at + 1] != 'u') return std::nullopt;
  unsigned unit = 0;
  const char* end = text.data() + at + kEscapeLength;
  const auto parsed = std::from_chars(text.data() + at + 2, end, unit, 16);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return unit;
}

void ReplaceLoneSurrogates(std::string& text) {
  std::size_t at = 0;
  while ((at = text.find('\\', at)) != std::string::npos) {
    const auto unit = UnitAt(text, at);
    if (!unit) {
      at += 2;
      continue;
    }
    const bool isHigh = *unit >= 0xD800 && *unit <= 0xDBFF;
    const bool isLow = *unit >= 0xDC00 && *unit <= 0xDFFF;
    const auto next = isHigh ? UnitAt(text, at + kEscapeLength) : std::nullopt;
    const bool isPair = next && *next >= 0xDC00 && *next <= 0xDFFF;
    if (!isPair && (isHigh || isLow)) text.replace(at, kEscapeLength, "\\ufffd");
    at += isPair ? 2 * kEscapeLength : kEscapeLength;
  }
}

}  // namespace

Json ParseDevToolsMessage(std::string text) {
  Json message = Json::parse(text, nullptr, false);
  if (!message.is_discarded()) return message;
  ReplaceLoneSurrogates(text);
  return Json::parse(text);
}

}  // namespace qv::devhost
