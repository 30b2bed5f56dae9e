#include "engines/memory/a1.h"

#include <algorithm>
#include <utility>

#include "foundation/text.h"

namespace qv::devhost::memory {
namespace {

/// One corner; 0 stands for a missing row or column.
struct Corner {
  long row = 0;
  long col = 0;
};

bool IsLetter(wchar_t unit) {
  return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}
bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

std::optional<Corner> ParseCorner(std::wstring_view text) {
  Corner corner;
  size_t i = 0;
  if (i < text.size() && text[i] == L'$') ++i;
  for (; i < text.size() && IsLetter(text[i]); ++i) {
    corner.col = corner.col * 26 + ((text[i] & 0x1F));
    if (corner.col > kMaxColumn) return std::nullopt;
  }
  if (corner.col != 0 && i < text.size() && text[i] == L'$') ++i;
  const size_t firstDigit = i;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    corner.row = corner.row * 10 + (text[i] - L'0');
    if (corner.row > kMaxRow) return std::nullopt;
  }
  if (i != text.size() || text.empty() || text.back() == L'$') return std::nullopt;
  if (i > firstDigit && corner.row == 0) return std::nullopt;
  if (corner.row == 0 && corner.col == 0) return std::nullopt;
  return corner;
}

std::optional<Area> ParseArea(std::wstring_view text) {
  const size_t colon = text.find(L':');
  const bool single = colon == std::wstring_view::npos;
  const auto first = ParseCorner(text.substr(0, colon));
  const auto second = single ? first : ParseCorner(text.substr(colon + 1));
  if (!first || !second) return std::nullopt;
  if ((first->row == 0) != (second->row == 0) || (first->col == 0) != (second->col == 0)) return std::nullopt;
  if (single && (first->row == 0 || first->col == 0)) return std::nullopt;

  Area area{first->row, first->col, second->row, second->col};
  if (first->row == 0) {
    area.row1 = 1;
    area.row2 = kMaxRow;
  }
  if (first->col == 0) {
    area.col1 = 1;
    area.col2 = kMaxColumn;
  }
  if (area.row1 > area.row2) std::swap(area.row1, area.row2);
  if (area.col1 > area.col2) std::swap(area.col1, area.col2);
  return area;
}

}  // namespace

Area CellArea(long row, long col) {
  return {row, col, row, col};
}

std::optional<Area> Intersect(const Area& left, const Area& right) {
  const Area common{std::max(left.row1, right.row1), std::max(left.col1, right.col1),
                    std::min(left.row2, right.row2), std::min(left.col2, right.col2)};
  if (common.row1 > common.row2 || common.col1 > common.col2) return std::nullopt;
  return common;
}

std::optional<std::vector<Area>> ParseAddress(std::wstring_view text) {
  std::vector<Area> areas;
  while (true) {
    const size_t comma = text.find(L',');
    const auto area = ParseArea(Trim(text.substr(0, comma)));
    if (!area) return std::nullopt;
    areas.push_back(*area);
    if (comma == std::wstring_view::npos) return areas;
    text.remove_prefix(comma + 1);
  }
}

std::wstring ColumnLetters(long column) {
  std::wstring letters;
  for (; column > 0; column = (column - 1) / 26)
    letters.insert(letters.begin(), static_cast<wchar_t>(L'A' + (column - 1) % 26));
  return letters;
}

std::wstring FormatAddress(const std::vector<Area>& areas, bool rowAbsolute, bool columnAbsolute) {
  const std::wstring_view rowMark = rowAbsolute ? L"$" : L"";
  const std::wstring_view columnMark = columnAbsolute ? L"$" : L"";
  const auto corner = [&](const Area& area, long row, long col) {
    // A whole sheet counts as whole rows, as in the host.
    if (area.IsWholeRows()) return Concat(rowMark, row);
    if (area.IsWholeColumns()) return Concat(columnMark, ColumnLetters(col));
    return Concat(columnMark, ColumnLetters(col), rowMark, row);
  };
  std::wstring text;
  for (const Area& area : areas) {
    if (!text.empty()) text += L',';
    text += corner(area, area.row1, area.col1);
    const bool whole = area.IsWholeRows() || area.IsWholeColumns();
    if (whole || area.Cells() > 1) text += Concat(L":", corner(area, area.row2, area.col2));
  }
  return text;
}

}  // namespace qv::devhost::memory
