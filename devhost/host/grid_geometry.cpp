#include "host/grid_geometry.h"

#include <algorithm>
#include <cmath>

namespace qv::devhost {
namespace {

constexpr double kPointsPerInch = 72;

/// 0-based line whose pixels hold the position.
std::optional<int> LineAt(const std::vector<int>& edges, int position) {
  const auto after = std::upper_bound(edges.begin(), edges.end(), position);
  if (after == edges.begin() || after == edges.end()) return std::nullopt;
  return static_cast<int>(after - edges.begin()) - 1;
}

int Edge(const std::vector<int>& edges, int line) {
  return edges[static_cast<std::size_t>(std::clamp(line, 0, static_cast<int>(edges.size()) - 1))];
}

/// 0-based last line that ends within the limit.
int LastFullLine(const std::vector<int>& edges, int start, int limit) {
  const auto first = std::upper_bound(edges.begin(), edges.end(), start) - edges.begin() - 1;
  const auto after = std::upper_bound(edges.begin(), edges.end(), limit) - edges.begin();
  return static_cast<int>(std::max(first, after - 2));
}

}  // namespace

int PixelsOf(double points, int dpi) {
  return static_cast<int>(std::lround(points * dpi / kPointsPerInch));
}

std::vector<int> EdgesOf(const std::vector<double>& lengths, int dpi, std::size_t anchor, int position) {
  std::vector<int> edges{0};
  for (const double length : lengths)
    edges.push_back(edges.back() + PixelsOf(length, dpi));
  const int shift = position - edges[std::min(anchor, lengths.size())];
  for (int& edge : edges)
    edge += shift;
  return edges;
}

void GridPane::Place(int row, int column, int dpi) {
  rowEdges = EdgesOf(grid.rowHeights, dpi, static_cast<std::size_t>(row - grid.area.firstRow), clip.top);
  columnEdges =
      EdgesOf(grid.columnWidths, dpi, static_cast<std::size_t>(column - grid.area.firstColumn), clip.left);
}

std::optional<int> GridPane::RowAt(int y) const {
  const auto line = LineAt(rowEdges, y);
  return line ? std::optional(grid.area.firstRow + *line) : std::nullopt;
}

std::optional<int> GridPane::ColumnAt(int x) const {
  const auto line = LineAt(columnEdges, x);
  return line ? std::optional(grid.area.firstColumn + *line) : std::nullopt;
}

RECT GridPane::RectOf(const GridArea& cells) const {
  const int row = cells.firstRow - grid.area.firstRow;
  const int column = cells.firstColumn - grid.area.firstColumn;
  return {Edge(columnEdges, column), Edge(rowEdges, row), Edge(columnEdges, column + cells.columns),
          Edge(rowEdges, row + cells.rows)};
}

RECT GridPane::RectOf(const GridCell& cell, int dpi) const {
  RECT rect = RectOf(GridArea{cell.row, cell.column, cell.rows, cell.columns});
  rect.left -= PixelsOf(cell.outside.left, dpi);
  rect.top -= PixelsOf(cell.outside.top, dpi);
  rect.right += PixelsOf(cell.outside.right, dpi);
  rect.bottom += PixelsOf(cell.outside.bottom, dpi);
  return rect;
}

int GridPane::LastFullRow() const {
  return grid.area.firstRow + LastFullLine(rowEdges, clip.top, clip.bottom);
}

int GridPane::LastFullColumn() const {
  return grid.area.firstColumn + LastFullLine(columnEdges, clip.left, clip.right);
}

}  // namespace qv::devhost
