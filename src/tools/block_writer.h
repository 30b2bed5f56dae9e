#pragma once

#include <string>
#include <vector>

#include "tools/tool_context.h"
#include "tools/tool_targets.h"
#include "tools/undo_log.h"
#include "workbook/cell_block.h"
#include "workbook/cell_content.h"
#include "workbook/range_geometry.h"

namespace qv {

/// Fewer cells are written one by one.
inline constexpr std::size_t kMinBlockCells = 16;

/// A rectangle to write in one go; the lists stand row by row, one entry a cell.
struct BlockWrite {
  RangeGeometry block;
  /// Each as of `FitsIntoArray`.
  std::vector<const CellContent*> contents;
  /// All readable.
  std::vector<const CellReading*> former;
  /// The number format that all cells have; empty when they differ.
  std::wstring formerFormat;
};

/// Whether a cell may get another number format by the content.
[[nodiscard]] bool MayChangeFormat(const CellContent& content);

/// Writes a rectangle of a sheet that is not protected, with undo records like those of single cells. False
/// when the cells have to be written one by one: rows are hidden or the host refused. Whatever it may have
/// written nevertheless then has its record. Host UI thread, the host's alerts off.
[[nodiscard]] bool WriteBlock(const ToolContext& context, const ToolSheet& sheet, const UndoBook& book,
                              const BlockWrite& write);

}  // namespace qv
