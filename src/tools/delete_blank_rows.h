#pragma once

#include <oaidl.h>

#include <cstdint>
#include <functional>

#include "tools/blank_rows.h"
#include "tools/row_preview.h"
#include "workbook/excel_window.h"

namespace qv {

/// Asks the user whether so many highlighted rows shall go. May run messages.
using ConfirmBlankRows = std::function<bool(std::int32_t found)>;

/// Finds the blank rows of the window's active sheet (without a window the Application's), shows them for the
/// question, puts the sheet's look back, and deletes them from the bottom up. Nothing is deleted while the
/// workbook is translated, while the host does not let the look be put back, or when the used range changed
/// during the question; rows that were given content meanwhile stay, and count as not found. What the host
/// does not let be put back is left in `preview`, to be tried again later. Host UI thread.
[[nodiscard]] BlankRowResult DeleteBlankRows(IDispatch* application, const ExcelWindow& window,
                                             RowPreview& preview, const ConfirmBlankRows& confirm);

}  // namespace qv
