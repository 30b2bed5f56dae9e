#include "translation/bilingual_text.h"

#include "foundation/text.h"

namespace qv {

BilingualValue MakeBilingualValue(std::wstring_view source, std::wstring_view translation) {
  const std::wstring_view trimmed = TrimRight(source);
  BilingualValue value;
  value.text = Concat(trimmed, L'\n', translation);
  value.originalLength = source.size();
  value.trimmedLength = trimmed.size();
  value.start = static_cast<std::int32_t>(trimmed.size()) + 2;
  value.length = static_cast<std::int32_t>(translation.size());
  return value;
}

}  // namespace qv
