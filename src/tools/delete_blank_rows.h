#pragma once

#include <oaidl.h>

#include <cstdint>
#include <functional>

#include "tools/blank_rows.h"
#include "tools/row_highlight.h"
#include "workbook/excel_window.h"

namespace qv {

/// Asks the user whether so many highlighted rows shall go. May run messages.
using ConfirmBlankRows = std::function<bool(std::int32_t found)>;

/// Finds the blank rows of the window's active sheet (without a window the Application's), highlights and
/// selects them for the question, puts fills, selection and scrolling back, and deletes them from the bottom
/// up. Rows that were given content during the question stay. Fills that the
/// host does not let be put back are left in `preview`, to be tried again later. Host UI thread.
[[nodiscard]] BlankRowResult DeleteBlankRows(IDispatch* application, const ExcelWindow& window,
                                             RowHighlight& preview, const ConfirmBlankRows& confirm);

}  // namespace qv
