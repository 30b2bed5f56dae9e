#include "engines/calc/grid_json.h"

#include <array>

#include "foundation/text.h"

namespace qv::devhost {

NLOHMANN_JSON_SERIALIZE_ENUM(GridHorizontal, {{GridHorizontal::kGeneral, "general"},
                                              {GridHorizontal::kLeft, "left"},
                                              {GridHorizontal::kCenter, "center"},
                                              {GridHorizontal::kRight, "right"},
                                              {GridHorizontal::kJustify, "justify"}})
NLOHMANN_JSON_SERIALIZE_ENUM(GridVertical, {{GridVertical::kBottom, "bottom"},
                                            {GridVertical::kCenter, "center"},
                                            {GridVertical::kTop, "top"}})
NLOHMANN_JSON_SERIALIZE_ENUM(GridContent, {{GridContent::kText, "text"},
                                           {GridContent::kNumber, "number"},
                                           {GridContent::kLogical, "logical"}})

namespace calc {
namespace {

using nlohmann::json;

std::wstring TextOf(const json& text) {
  return FromUtf8(text.get_ref<const std::string&>());
}

GridArea AreaOf(const json& area) {
  const auto [row, column, rows, columns] = area.get<std::array<int, 4>>();
  return {row, column, rows, columns};
}

GridFont FontOf(const json& font) {
  return {TextOf(font.at("name")),          font.at("size").get<double>(),
          font.at("bold").get<bool>(),      font.at("italic").get<bool>(),
          font.at("underline").get<bool>(), font.at("strikethrough").get<bool>(),
          font.at("color").get<COLORREF>()};
}

GridBorder BorderOf(const json& border) {
  return {border.at(0).get<double>(), border.at(1).get<COLORREF>()};
}

GridStyle StyleOf(const json& from) {
  GridStyle style;
  style.font = FontOf(from.at("font"));
  if (const auto fill = from.find("fill"); fill != from.end()) style.fill = fill->get<COLORREF>();
  style.horizontal = from.at("horizontal").get<GridHorizontal>();
  style.vertical = from.at("vertical").get<GridVertical>();
  style.wrap = from.at("wrap").get<bool>();
  if (const auto borders = from.find("borders"); borders != from.end()) {
    style.left = BorderOf(borders->at(0));
    style.top = BorderOf(borders->at(1));
    style.right = BorderOf(borders->at(2));
    style.bottom = BorderOf(borders->at(3));
  }
  return style;
}

GridCell CellOf(const json& from) {
  GridCell cell;
  cell.row = from.at("row").get<int>();
  cell.column = from.at("column").get<int>();
  cell.style = from.at("style").get<std::size_t>();
  if (const auto text = from.find("text"); text != from.end()) {
    cell.text = TextOf(*text);
    cell.content = from.at("content").get<GridContent>();
  }
  if (const auto span = from.find("span"); span != from.end()) {
    cell.rows = span->at(0).get<int>();
    cell.columns = span->at(1).get<int>();
    const auto [left, top, right, bottom] = from.at("outside").get<std::array<double, 4>>();
    cell.outside = {left, top, right, bottom};
  }
  for (const json& run : from.value("runs", json::array())) {
    cell.runs.push_back({run.at(0).get<int>(), run.at(1).get<int>(), FontOf(run.at(2))});
  }
  return cell;
}

GridShape ShapeOf(const json& shape) {
  return {shape.at("left").get<double>(),   shape.at("top").get<double>(), shape.at("width").get<double>(),
          shape.at("height").get<double>(), shape.at("chart").get<bool>(), TextOf(shape.at("title"))};
}

template <typename Item>
void Fill(std::vector<Item>& items, const json& from, Item (*read)(const json&)) {
  items.reserve(from.size());
  for (const json& each : from)
    items.push_back(read(each));
}

}  // namespace

GridSnapshot GridFromJson(const json& from) {
  GridSnapshot grid;
  Fill(grid.sheets, from.at("sheets"), TextOf);
  grid.activeSheet = from.at("activeSheet").get<std::size_t>();
  grid.area = AreaOf(from.at("area"));
  from.at("widths").get_to(grid.columnWidths);
  from.at("heights").get_to(grid.rowHeights);
  Fill(grid.styles, from.at("styles"), StyleOf);
  Fill(grid.cells, from.at("cells"), CellOf);
  Fill(grid.selection, from.at("selection"), AreaOf);
  from.at("scroll").at(0).get_to(grid.scrollRow);
  from.at("scroll").at(1).get_to(grid.scrollColumn);
  from.at("frozen").at(0).get_to(grid.frozenRows);
  from.at("frozen").at(1).get_to(grid.frozenColumns);
  Fill(grid.shapes, from.at("shapes"), ShapeOf);
  from.at("used").at(0).get_to(grid.usedRows);
  from.at("used").at(1).get_to(grid.usedColumns);
  return grid;
}

}  // namespace calc
}  // namespace qv::devhost
