#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// The answer for a property; nothing gives VT_NULL, which stands for a mixed state.
[[nodiscard]] Variant StyleVariant(const std::optional<StyleValue>& value);

/// The value that a caller puts; HostError for a type that no property takes.
[[nodiscard]] StyleValue StyleValueOf(const VARIANT& value);

/// Collects values as long as they are all the same.
class Uniform {
 public:
  /// False once two values differ.
  bool Add(StyleValue value);
  /// Nothing when values differ or there was none.
  [[nodiscard]] std::optional<StyleValue> Result() const { return mixed_ ? std::nullopt : common_; }

 private:
  std::optional<StyleValue> common_;
  bool mixed_ = false;
};

/// Calls `visit(style, cell)` for every cell of the areas that exists and once for those that do not (with a
/// null cell and the default style); stops when it gives false.
template <typename Visit>
void ForEachStyle(const Sheet& sheet, const std::vector<Area>& areas, Visit&& visit) {
  static const CellStyle defaultStyle;
  for (const Area& area : areas) {
    long long existing = 0;
    bool goOn = true;
    sheet.ForEach(area, [&](long, long, const Cell& cell) {
      ++existing;
      goOn = visit(cell.Style(), &cell);
      return goOn;
    });
    if (goOn && existing < area.Cells()) goOn = visit(defaultStyle, static_cast<const Cell*>(nullptr));
    if (!goOn) return;
  }
}

/// One property of all cells, or nothing where they differ.
[[nodiscard]] std::optional<StyleValue> ReadCellStyle(const Sheet& sheet, const std::vector<Area>& areas,
                                                      const StyleProperty<CellStyle>& property);

/// Sets one property of all cells; refused on a protected sheet and for a value out of range.
void WriteCellStyle(Sheet& sheet, const std::vector<Area>& areas, const StyleProperty<CellStyle>& property,
                    const VARIANT& value);

}  // namespace qv::devhost::memory
