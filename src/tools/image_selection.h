#pragma once

#include <optional>

#include "tools/image_shapes.h"
#include "workbook/target_context.h"

namespace qv {

/// What is selected as far as it is a picture.
struct SelectedPicture {
  /// Nothing when cells are selected, or no picture.
  std::optional<SheetPicture> picture;
  /// Whether the host was too busy to tell.
  bool isBusy = false;
};

/// The first picture that the target window has selected; of a selected group the first one in it. Host UI
/// thread.
[[nodiscard]] SelectedPicture FindSelectedPicture(const TargetContext& target);

}  // namespace qv
