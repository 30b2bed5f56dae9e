#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "workbook/boxed.h"

namespace qv {

/// Font of a cell as it was before the first write; an absent member could not be read or was mixed.
struct BaselineFont {
  std::optional<std::wstring> name;
  /// Points.
  std::optional<double> size;
  std::optional<bool> bold;
  /// The host's blue-green-red number; absent means automatic.
  std::optional<std::int32_t> color;
};

enum class UnitKind : std::int32_t { kCell = 0, kChartTitle = 1 };

/// One translatable cell or chart title. Collection fills the upper part, translation and write-back the
/// lower.
struct CellUnit {
  /// 1-based worksheet coordinates; 0 for a chart title.
  std::int32_t row = 0;
  std::int32_t col = 0;
  UnitKind kind = UnitKind::kCell;
  /// "R3C2" for a cell, "ChartTitle:" and the 1-based chart number for a chart title; unique within a sheet.
  std::wstring unitId;
  /// Text after normalisation.
  std::wstring sourceText;
  /// What is sent for translation.
  std::wstring workText;
  std::wstring sheetName;

  std::wstring translation;
  /// Set once the unit's cell was written; cleared when it is restored.
  bool written = false;
  /// Value and formula of the cell before the first write are kept for formulas only; see restore.
  Boxed<std::wstring> formulaBeforeWrite;
  Boxed<BaselineFont> baseline;
};

}  // namespace qv
