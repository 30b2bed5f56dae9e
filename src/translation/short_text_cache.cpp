#include "translation/short_text_cache.h"

namespace qv {
namespace {

constexpr std::size_t kMaxCharacters = 4;

bool IsHighSurrogate(wchar_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(wchar_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

bool ShortTextCache::Takes(std::wstring_view text) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (++characters > kMaxCharacters) return false;
    if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) ++i;
  }
  return characters > 0;
}

const std::wstring* ShortTextCache::Find(const std::wstring& text) const {
  const auto entry = translations_.find(text);
  return entry == translations_.end() ? nullptr : &entry->second;
}

void ShortTextCache::Store(const std::wstring& text, const std::wstring& translation) {
  if (Takes(text)) translations_.insert_or_assign(text, translation);
}

}  // namespace qv
