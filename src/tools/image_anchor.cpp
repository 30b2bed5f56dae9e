#include "tools/image_anchor.h"

#include <cmath>

#include "foundation/json_reader.h"
#include "foundation/json_text.h"
#include "foundation/text.h"
#include "workbook/cell_content.h"

namespace qv {
namespace {

constexpr int kVersion = 1;
constexpr std::wstring_view kHost = L"excel";
constexpr std::wstring_view kKind = L"excel_shape";

/// Name and place of each number of an anchor, in the order of the JSON text.
constexpr struct {
  std::wstring_view name;
  double ImageAnchor::*field;
} kNumbers[] = {{L"widthPt", &ImageAnchor::width},
                {L"heightPt", &ImageAnchor::height},
                {L"leftPt", &ImageAnchor::left},
                {L"topPt", &ImageAnchor::top}};

std::wstring PathJson(const std::vector<std::int32_t>& path) {
  std::wstring json;
  for (const std::int32_t position : path)
    json += Concat(json.empty() ? L"" : L",", position);
  return Concat(L'[', json, L']');
}

/// A whole number from 1 on; 0 for anything else.
std::int32_t PositionOf(std::wstring_view value) {
  const std::optional<double> number = NumberOfValue(value);
  const bool isPosition = number && *number >= 1 && *number <= INT32_MAX && *number == std::floor(*number);
  return isPosition ? static_cast<std::int32_t>(*number) : 0;
}

/// Absent and null stand for the empty path.
std::optional<std::vector<std::int32_t>> PathOf(std::wstring_view value) {
  std::vector<std::int32_t> path;
  if (value.empty()) return path;
  const auto elements = JsonElementsOf(value);
  if (!elements || elements->size() > kMaxChildPath) return std::nullopt;
  for (const std::wstring_view element : *elements) {
    path.push_back(PositionOf(element));
    if (path.back() == 0) return std::nullopt;
  }
  return path;
}

}  // namespace

std::wstring AnchorJson(const ImageAnchor& anchor, std::wstring_view more) {
  std::wstring numbers;
  for (const auto& [name, field] : kNumbers)
    numbers += Concat(L",\"", name, L"\":", NumberText(anchor.*field));
  return Concat(L"{\"v\":", kVersion, L",\"host\":\"", kHost, L"\",\"kind\":\"", kKind, L"\",\"sheetName\":",
                JsonQuote(anchor.sheetName), L",\"shapeName\":", JsonQuote(anchor.shapeName),
                L",\"shapeIndex\":", anchor.shapeIndex, L",\"childPath\":", PathJson(anchor.childPath),
                numbers, more, L'}');
}

std::optional<ImageAnchor> ParseAnchor(std::wstring_view json) {
  if (!JsonMembersOf(json)) return std::nullopt;
  const JsonReader reader(json);
  if (reader.Text(L"host") != kHost || reader.Text(L"kind") != kKind) return std::nullopt;
  ImageAnchor anchor;
  anchor.sheetName = reader.Text(L"sheetName");
  anchor.shapeName = reader.Text(L"shapeName");
  anchor.shapeIndex = PositionOf(reader.Value(L"shapeIndex"));
  std::optional<std::vector<std::int32_t>> path = PathOf(reader.Value(L"childPath"));
  if (anchor.sheetName.empty() || anchor.shapeIndex == 0 || !path) return std::nullopt;
  anchor.childPath = *std::move(path);
  for (const auto& [name, field] : kNumbers) {
    const std::optional<double> number = NumberOfValue(reader.Value(name));
    if (!number) return std::nullopt;
    anchor.*field = *number;
  }
  return anchor;
}

bool IsSamePicture(const ImageAnchor& left, const ImageAnchor& right) {
  for (const auto& [name, field] : kNumbers) {
    if (!(std::abs(left.*field - right.*field) <= kAnchorTolerance)) return false;
  }
  return left.sheetName == right.sheetName && left.shapeName == right.shapeName &&
         left.childPath == right.childPath;
}

}  // namespace qv
