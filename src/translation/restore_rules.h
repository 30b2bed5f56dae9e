#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "translation/translation_session.h"
#include "workbook/cell_unit.h"

namespace qv {

// Which units and rows a restore touches, and in what order.

/// What write-back put into the unit's cell or chart title.
[[nodiscard]] std::wstring WrittenTextOf(const CellUnit& unit);

/// Equality but for the kind of line ends and trailing white space, which hosts and files change.
[[nodiscard]] bool IsSameCellText(std::wstring_view left, std::wstring_view right);

/// Whether the unit's cell, which shows `live`, may be put back unasked: it shows what was written, or its
/// source already.
[[nodiscard]] bool IsOurText(const CellUnit& unit, std::wstring_view live);

/// The same of the formula that the cell holds, empty for none: write-back leaves none behind, so that it is
/// the unit's former one or the user's own.
[[nodiscard]] bool IsOurFormula(const CellUnit& unit, std::wstring_view live);

using UnitTest = std::function<bool(const CellUnit&)>;

/// Indexes (0-based) of the units that pass, in the session's order.
[[nodiscard]] std::vector<std::size_t> UnitsThat(const TranslationSession& session, const UnitTest& passes);

/// The rows whose former height is due: those that write-back has changed and in which no written unit is
/// left. It follows from the session alone, so that what one restore could not finish the next one does.
[[nodiscard]] std::vector<SheetRow> RowsToRestore(const TranslationSession& session);

/// A remembered height within the host's limits, in points.
[[nodiscard]] double RestorableHeight(double points);

}  // namespace qv
