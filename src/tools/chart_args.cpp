#include "tools/chart_args.h"

#include <string>

namespace qv {
namespace {

constexpr ChartKind kKinds[] = {{L"column", 51}, {L"line", 4}, {L"pie", 5}, {L"bar", 57}};

struct PlaceWord {
  std::wstring_view name;
  double ChartPlace::*field;
};
constexpr PlaceWord kPlaceWords[] = {{L"left", &ChartPlace::left},
                                     {L"top", &ChartPlace::top},
                                     {L"width", &ChartPlace::width},
                                     {L"height", &ChartPlace::height}};

}  // namespace

std::optional<ChartKind> ParseChartKind(const ToolArguments& arguments) {
  // Only a member of its own: the word may stand anywhere else in a message.
  const std::wstring_view value = arguments.Value(L"type");
  if (value.empty() || value == L"null") return kKinds[0];
  const std::optional<std::wstring> word = TextOfValue(value);
  if (!word) return std::nullopt;
  if (word->empty()) return kKinds[0];
  for (const ChartKind& kind : kKinds) {
    if (kind.word == *word) return kind;
  }
  return std::nullopt;
}

ChartPlace ParseChartPlace(const ToolArguments& arguments) {
  ChartPlace place;
  for (const auto& [name, field] : kPlaceWords) {
    const double points = NumberOfValue(arguments.Value(name)).value_or(0);
    if (points > 0) place.*field = points;
  }
  return place;
}

}  // namespace qv
