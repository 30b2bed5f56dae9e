#pragma once

#include <oaidl.h>

#include <string>

namespace qv {

/// How the ribbon's description names a control. Empty where the host does not tell.
struct RibbonControlNames {
  std::wstring id;
  std::wstring tag;
};

/// The names of the control that a ribbon callback is about, which may be null.
[[nodiscard]] RibbonControlNames ReadRibbonControl(IDispatch* control);

}  // namespace qv
