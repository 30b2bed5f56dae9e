#include "tools/calculation_mode.h"

namespace qv {
namespace {

struct Mode {
  std::wstring_view word;
  std::int32_t number;
};
constexpr Mode kModes[] = {{L"manual", -4135}, {L"automatic", -4105}, {L"semiautomatic", 2}};

}  // namespace

std::optional<std::int32_t> CalculationModeOf(std::wstring_view word) {
  for (const Mode& mode : kModes) {
    if (mode.word == word) return mode.number;
  }
  return std::nullopt;
}

std::wstring_view CalculationWordOf(std::int32_t number) {
  for (const Mode& mode : kModes) {
    if (mode.number == number) return mode.word;
  }
  return L"unknown";
}

}  // namespace qv
