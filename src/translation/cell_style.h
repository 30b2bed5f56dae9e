#pragma once

#include <oaidl.h>

#include <cstdint>
#include <optional>
#include <string_view>

#include "foundation/variant.h"
#include "translation/bilingual_text.h"
#include "translation/start_request.h"
#include "workbook/automation.h"
#include "workbook/cell_unit.h"

namespace qv {

// How cells look before and after write-back. Failures are logged and never fail a write. Host UI thread.

/// Reads the cell's font for a later restore (logged). `row` and `col` are 1-based. With a busy `answer` what
/// is returned is not the whole.
[[nodiscard]] BaselineFont CaptureBaselineFont(IDispatch* cell, std::int32_t row, std::int32_t col,
                                               HostAnswer& answer);

/// Wraps the cell's text, and its merge area's.
void WrapCellText(IDispatch* cell);

/// Styles the translation inside the cell's text and nothing else; every part is tried. Good when all were
/// taken, else how the host refused.
[[nodiscard]] HostAnswer StyleTranslation(IDispatch* cell, const BilingualValue& value,
                                          const TargetFont& font);

/// Makes the cell look as it did before write-back: what differs is put, so that automatic and theme colours
/// stay what they are. Good when all is as it was, else how the host refused.
[[nodiscard]] HostAnswer RestoreBaseline(IDispatch* cell, const BaselineFont& baseline);

/// The merge area of a merged cell, else null.
[[nodiscard]] ComPtr<IDispatch> MergeAreaOf(IDispatch* cell);

}  // namespace qv
