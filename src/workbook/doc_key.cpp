#include "workbook/doc_key.h"

#include <cstdint>

#include "foundation/text.h"

namespace qv {

std::wstring DocKey(std::wstring_view fullName, LowerCaseUnit lower) {
  if (fullName.empty()) return L"_unsaved";
  // FNV-1a with one step a UTF-16 unit instead of one a byte; keys that are already stored depend on it.
  std::uint64_t hash = 14695981039346656037ULL;
  for (const wchar_t unit : fullName) {
    hash ^= static_cast<std::uint64_t>(lower(unit)) & 0xFFFF;
    hash *= 1099511628211ULL;
  }
  return Concat(Hex{hash, 16});
}

}  // namespace qv
