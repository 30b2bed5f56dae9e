#include "workbook/cell_content.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {

std::wstring NumberText(double number) {
  const double size = std::fabs(number);
  const bool plain = size == 0 || (size >= 1e-6 && size < 1e21);
  std::array<char, 64> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                 plain ? std::chars_format::fixed : std::chars_format::scientific);
  std::wstring text = Widen(std::string_view(digits.data(), end.ptr));
  std::ranges::replace(text, L'e', L'E');
  return text;
}

double NumberOfText(std::wstring_view text) {
  return JsonGetDouble(Concat(L"\"v\":", text), L"v");
}

std::wstring_view ErrorWord(std::int32_t code) {
  constexpr std::pair<std::int32_t, std::wstring_view> kWords[] = {
      {2000, L"#NULL!"},  {2007, L"#DIV/0!"},   {2015, L"#VALUE!"},   {2023, L"#REF!"},
      {2029, L"#NAME?"},  {2036, L"#NUM!"},     {2042, L"#N/A"},      {2043, L"#GETTING_DATA"},
      {2045, L"#SPILL!"}, {2046, L"#CONNECT!"}, {2047, L"#BLOCKED!"}, {2048, L"#UNKNOWN!"},
      {2049, L"#FIELD!"}, {2050, L"#CALC!"}};
  for (const auto& [known, word] : kWords) {
    if (known == (code & 0xFFFF)) return word;
  }
  return L"#VALUE!";
}

bool IsFormulaText(std::wstring_view text) {
  return text.starts_with(L'=');
}

}  // namespace qv
