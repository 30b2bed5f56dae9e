#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "workbook/cell_text.h"
#include "workbook/cell_unit.h"

namespace qv {

/// The units of one collection in the order in which they were found, and the warnings about cells left out.
class UnitList {
 public:
  UnitList(std::wstring_view sheetName, AlphabeticTest isAlphabetic)
      : sheet_(std::make_shared<SheetTexts>(sheetName)), isAlphabetic_(isAlphabetic) {}

  /// Makes room for that many units.
  void Reserve(std::size_t count) { units_.reserve(count); }

  /// Adds the text of a cell (1-based position) unless it needs no translation; a too long one becomes a
  /// warning. The cells of one rectangle come once each, so ids stay unique without a test.
  void AddText(std::int32_t row, std::int32_t col, std::wstring_view raw);

  /// Adds what another list of the same sheet holds, without the cells that are here already.
  void Append(UnitList&& other);

  [[nodiscard]] std::size_t Size() const { return units_.size(); }
  [[nodiscard]] std::vector<CellUnit> TakeUnits() { return std::move(units_); }
  [[nodiscard]] std::vector<std::wstring> TakeWarnings() { return std::move(warnings_); }

 private:
  std::shared_ptr<SheetTexts> sheet_;
  AlphabeticTest isAlphabetic_;
  std::vector<CellUnit> units_;
  std::vector<std::wstring> warnings_;
  /// Row and column of every unit; kept only once a second area was appended.
  std::unordered_set<std::uint64_t> cells_;
};

}  // namespace qv
