#include "workbook/platform_letters.h"

#include <windows.h>

#include <bitset>
#include <memory>
#include <numeric>
#include <vector>

namespace qv {
namespace {

constexpr std::size_t kUnits = 0x10000;
using LetterTable = std::bitset<kUnits>;

/// One question for all units instead of one per character of every scanned cell.
std::unique_ptr<const LetterTable> BuildTable() {
  std::vector<wchar_t> units(kUnits);
  std::iota(units.begin(), units.end(), L'\0');
  std::vector<WORD> types(kUnits);
  auto table = std::make_unique<LetterTable>();
  if (!GetStringTypeExW(LOCALE_USER_DEFAULT, CT_CTYPE1, units.data(), static_cast<int>(kUnits), types.data()))
    return table;
  for (std::size_t i = 0; i < kUnits; ++i)
    table->set(i, (types[i] & C1_ALPHA) != 0);
  return table;
}

}  // namespace

bool IsPlatformLetter(wchar_t unit) {
  static const std::unique_ptr<const LetterTable> table = BuildTable();
  return table->test(static_cast<std::size_t>(unit));
}

}  // namespace qv
