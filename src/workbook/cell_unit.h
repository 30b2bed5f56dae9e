#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "workbook/boxed.h"
#include "workbook/sheet_texts.h"

namespace qv {

/// Look of a cell as it was before the first write; an absent member could not be read or was mixed.
struct BaselineFont {
  std::optional<std::wstring> name;
  /// Points.
  std::optional<double> size;
  std::optional<bool> bold;
  /// The host's blue-green-red number; absent means automatic.
  std::optional<std::int32_t> color;
  /// Whether the cell wrapped its text; known once it was written bilingually.
  std::optional<bool> wrap;
};

enum class UnitKind : std::int32_t { kCell = 0, kChartTitle = 1 };

/// One translatable cell or chart title. Collection fills the upper part, translation and write-back the
/// lower. There can be hundreds of thousands, so what can be derived or shared is not stored in each.
struct CellUnit {
  /// 1-based worksheet coordinates; 0 for a chart title.
  std::int32_t row = 0;
  std::int32_t col = 0;
  /// 1-based number of the chart on its sheet; 0 for a cell.
  std::int32_t chart = 0;
  UnitKind kind = UnitKind::kCell;
  /// Set once the unit's cell was written; cleared when it is restored.
  bool written = false;
  /// The cell was written with source and translation together.
  bool bilingual = false;
  /// Shared by all units of a sheet; null means no name.
  std::shared_ptr<SheetTexts> sheet;
  /// Text after normalisation; kept by `sheet`.
  std::wstring_view sourceText;
  /// Set where something else than the source is to be translated.
  Boxed<std::wstring> replacedText;

  std::wstring translation;
  /// The formula of a cell that held one before its first write; see restore.
  Boxed<std::wstring> formulaBeforeWrite;
  Boxed<BaselineFont> baseline;

  /// The cell is the user's own again, or still.
  void ForgetBaseline() {
    baseline.reset();
    formulaBeforeWrite.reset();
  }

  /// "R3C2" for a cell, "ChartTitle:" and the chart's number for a chart title; unique within a sheet.
  [[nodiscard]] std::wstring UnitId() const;
  /// What is sent for translation.
  [[nodiscard]] std::wstring_view WorkText() const { return replacedText ? *replacedText : sourceText; }
  /// Empty when the unit has no sheet.
  [[nodiscard]] const std::wstring& SheetName() const;
};

}  // namespace qv
