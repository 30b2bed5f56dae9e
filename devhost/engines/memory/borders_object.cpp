#include "engines/memory/borders_object.h"

#include <algorithm>
#include <array>
#include <optional>

#include "engines/memory/style_access.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {
namespace {

constexpr long kInsideVertical = 11;
constexpr long kInsideHorizontal = 12;
constexpr long kContinuous = 1;

bool IsLineStyle(long value) {
  constexpr std::array kStyles = {1L, 4L, 5L, 13L, -4115L, -4118L, -4119L, kNone};
  return std::ranges::find(kStyles, value) != kStyles.end();
}
bool IsWeight(long value) {
  constexpr std::array kWeights = {1L, 2L, 4L, -4138L};
  return std::ranges::find(kWeights, value) != kWeights.end();
}
bool IsColor(long value) {
  return value >= 0 && value <= 0xFFFFFF;
}

/// The cells that an edge of the area belongs to, and the line of theirs that it is; nothing for the inside
/// of an area that has none. A line between two cells is kept by the left or upper one.
struct EdgeCells {
  Area area;
  BorderLine CellStyle::*line;
};

std::optional<EdgeCells> CellsOfEdge(const Area& area, long edge) {
  switch (edge) {
    case 7:
      return EdgeCells{{area.row1, area.col1, area.row2, area.col1}, &CellStyle::leftBorder};
    case 8:
      return EdgeCells{{area.row1, area.col1, area.row1, area.col2}, &CellStyle::topBorder};
    case 9:
      return EdgeCells{{area.row2, area.col1, area.row2, area.col2}, &CellStyle::bottomBorder};
    case 10:
      return EdgeCells{{area.row1, area.col2, area.row2, area.col2}, &CellStyle::rightBorder};
    case kInsideVertical:
      if (area.col1 == area.col2) return std::nullopt;
      return EdgeCells{{area.row1, area.col1, area.row2, area.col2 - 1}, &CellStyle::rightBorder};
    default:
      if (area.row1 == area.row2) return std::nullopt;
      return EdgeCells{{area.row1, area.col1, area.row2 - 1, area.col2}, &CellStyle::bottomBorder};
  }
}

}  // namespace

const ClassInfo& BordersObject::Class() const {
  using B = BordersObject;
  static const ClassInfo info("Borders",
                              {
                                  {L"Count", kGet, Do<&B::Count>},
                                  {L"Item", kGet, Do<&B::Item>},
                                  {L"Application", kGet, Do<&B::Application>},
                              },
                              L"Item", true);
  return info;
}

void BordersObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

Variant BordersObject::Item(Call& call) {
  const long edge = call.Long(0, 0);
  if (edge < 7 || edge > kInsideHorizontal) Refuse();
  return Make<BorderObject>(SharedHost(), sheet_, areas_, edge);
}

const ClassInfo& BorderObject::Class() const {
  using B = BorderObject;
  static const ClassInfo info("Border", {
                                            {L"LineStyle", kGet | kPut, Do<&B::LineStyle>},
                                            {L"Weight", kGet | kPut, Do<&B::Weight>},
                                            {L"Color", kGet | kPut, Do<&B::Color>},
                                            {L"Application", kGet, Do<&B::Application>},
                                        });
  return info;
}

void BorderObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

Variant BorderObject::LineStyle(Call& call) {
  return Access(&BorderLine::style, call, IsLineStyle);
}
Variant BorderObject::Weight(Call& call) {
  return Access(&BorderLine::weight, call, IsWeight);
}
Variant BorderObject::Color(Call& call) {
  return Access(&BorderLine::color, call, IsColor);
}

Variant BorderObject::Access(long BorderLine::*field, Call& call, bool (*isAllowed)(long)) {
  const std::optional<EdgeCells> cells = CellsOfEdge(areas_.front(), edge_);
  if (!cells) Refuse();
  if (!call.IsPut()) {
    Uniform uniform;
    ForEachStyle(*sheet_, {cells->area}, [&](const CellStyle& style, const Cell*) {
      return uniform.Add(style.*(cells->line).*field);
    });
    return StyleVariant(uniform.Result());
  }
  Host::RequireFormattable(*sheet_);
  const long value = ToLong(call.Value());
  if (!isAllowed(value)) Refuse();
  sheet_->ChangeStyle(cells->area, [&](CellStyle& style) {
    BorderLine& line = style.*(cells->line);
    // A weight or colour makes a line where there was none.
    if (line.style == kNone) line.style = kContinuous;
    line.*field = value;
  });
  return {};
}

}  // namespace qv::devhost::memory
