#pragma once

#include <string_view>

#include "foundation/panel_output.h"
#include "workbook/target_context.h"

namespace qv {

/// "quickTranslateWrite": puts a text into the top-left cell of the selection, as text and whatever a run
/// does. A cell that does not take it is logged and told to the user as in write-back. Host UI thread.
void WriteQuickTranslation(const TargetContext& target, PanelOutput& output, std::wstring_view message);

}  // namespace qv
