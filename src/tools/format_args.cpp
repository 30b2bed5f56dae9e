#include "tools/format_args.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "foundation/json_parts.h"

namespace qv {
namespace {

struct NamedNumber {
  std::wstring_view name;
  std::int32_t number;
};

// The host's published enumeration values.
constexpr NamedNumber kHorizontal[] = {{L"left", -4131}, {L"center", -4108}, {L"right", -4152}};
constexpr NamedNumber kVertical[] = {{L"top", -4160}, {L"middle", -4108}, {L"bottom", -4107}};
constexpr NamedNumber kEdges[] = {{L"left", 7},      {L"top", 8},       {L"bottom", 9},   {L"right", 10},
                                  {L"inside_v", 11}, {L"inside_h", 12}, {L"insideV", 11}, {L"insideH", 12}};
constexpr std::array<std::int32_t, 6> kAllEdges = {7, 8, 9, 10, 11, 12};

constexpr std::int32_t kContinuous = 1;
constexpr std::int32_t kDash = -4115;
constexpr std::int32_t kNoLine = -4142;
constexpr std::int32_t kThin = 2;
constexpr std::int32_t kThick = 4;

std::optional<std::int32_t> NumberNamed(std::span<const NamedNumber> table, std::wstring_view name) {
  const auto found = std::ranges::find(table, name, &NamedNumber::name);
  return found == table.end() ? std::nullopt : std::optional(found->number);
}

/// The number that a member's word stands for.
std::optional<std::int32_t> NumberOfWord(std::span<const NamedNumber> table, const JsonMembers& members,
                                         std::wstring_view name) {
  return NumberNamed(table, JsonStringOf(members, name).value_or(std::wstring()));
}

JsonMembers ObjectOf(std::wstring_view value) {
  return JsonMembersOf(value).value_or(JsonMembers());
}

std::optional<std::int32_t> ColorOf(std::wstring_view value) {
  const std::optional<std::wstring> text = TextOfValue(value);
  return text ? ParseColor(*text) : std::nullopt;
}

std::optional<std::int32_t> HexDigit(wchar_t unit) {
  if (unit >= L'0' && unit <= L'9') return unit - L'0';
  if (unit >= L'a' && unit <= L'f') return unit - L'a' + 10;
  if (unit >= L'A' && unit <= L'F') return unit - L'A' + 10;
  return std::nullopt;
}

std::optional<std::wstring> NonEmpty(std::optional<std::wstring> text) {
  return text && !text->empty() ? std::move(text) : std::nullopt;
}

FontFormat ParseFont(const JsonMembers& font) {
  return {.bold = FlagOfValue(JsonValueOf(font, L"bold")),
          .italic = FlagOfValue(JsonValueOf(font, L"italic")),
          .underline = FlagOfValue(JsonValueOf(font, L"underline")),
          .size = NumberOfValue(JsonValueOf(font, L"size")),
          .name = NonEmpty(JsonStringOf(font, L"name")),
          .color = ColorOf(JsonValueOf(font, L"color"))};
}

void AddEdge(std::vector<std::int32_t>& edges, std::wstring_view name) {
  const auto add = [&](std::int32_t edge) {
    if (std::ranges::find(edges, edge) == edges.end()) edges.push_back(edge);
  };
  if (name == L"all") std::ranges::for_each(kAllEdges, add);
  if (const std::optional<std::int32_t> edge = NumberNamed(kEdges, name)) add(*edge);
}

std::vector<std::int32_t> ParseEdges(std::wstring_view value) {
  std::vector<std::int32_t> edges;
  if (value.empty()) AddEdge(edges, L"all");
  if (const std::optional<std::wstring> name = TextOfValue(value)) AddEdge(edges, *name);
  const auto names = JsonElementsOf(value);
  for (const std::wstring_view name : names.value_or(std::vector<std::wstring_view>()))
    AddEdge(edges, TextOfValue(name).value_or(std::wstring()));
  return edges;
}

std::optional<BorderLine> ParseLine(std::wstring_view value) {
  const std::wstring style = TextOfValue(value).value_or(std::wstring());
  if (style == L"thin") return BorderLine{kContinuous, kThin};
  if (style == L"thick") return BorderLine{kContinuous, kThick};
  if (style == L"dashed") return BorderLine{kDash, kThin};
  if (style == L"none") return BorderLine{kNoLine, std::nullopt};
  return std::nullopt;
}

BorderFormat ParseBorder(std::wstring_view value) {
  const std::optional<JsonMembers> border = JsonMembersOf(value);
  if (!border) return {};
  BorderFormat format{.edges = {},
                      .line = ParseLine(JsonValueOf(*border, L"style")),
                      .color = ColorOf(JsonValueOf(*border, L"color"))};
  // The host draws a line where it is given a colour.
  if (format.line && format.line->style == kNoLine) format.color.reset();
  if (format.line || format.color) format.edges = ParseEdges(JsonValueOf(*border, L"edges"));
  return format;
}

}  // namespace

std::optional<std::int32_t> ParseColor(std::wstring_view text) {
  if (text.starts_with(L'#')) text.remove_prefix(1);
  if (text.size() != 6) return std::nullopt;
  std::int32_t color = 0;
  // The last pair is blue, which the host keeps in the high byte.
  for (const std::size_t at : {4u, 2u, 0u}) {
    const std::optional<std::int32_t> high = HexDigit(text[at]);
    const std::optional<std::int32_t> low = HexDigit(text[at + 1]);
    if (!high || !low) return std::nullopt;
    color = color * 256 + *high * 16 + *low;
  }
  return color;
}

RangeFormat ParseRangeFormat(const ToolArguments& arguments) {
  const JsonMembers alignment = ObjectOf(arguments.Value(L"alignment"));
  const std::wstring_view fill = arguments.Value(L"fill");
  const std::optional<bool> wrapBeside = FlagOfValue(arguments.Value(L"wrapText"));
  return {.font = ParseFont(ObjectOf(arguments.Value(L"font"))),
          .fill = ColorOf(fill.starts_with(L'{') ? JsonValueOf(ObjectOf(fill), L"color") : fill),
          .horizontal = NumberOfWord(kHorizontal, alignment, L"horizontal"),
          .vertical = NumberOfWord(kVertical, alignment, L"vertical"),
          .wrapText = wrapBeside ? wrapBeside : FlagOfValue(JsonValueOf(alignment, L"wrapText")),
          .numberFormat = NonEmpty(TextOfValue(arguments.Value(L"numberFormat"))),
          .border = ParseBorder(arguments.Value(L"border"))};
}

}  // namespace qv
