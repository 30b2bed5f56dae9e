#pragma once

#include <oaidl.h>

#include <optional>
#include <string>

#include "addin/office_interfaces.h"
#include "addin/ribbon_commands.h"
#include "addin/ribbon_control.h"
#include "addin/ribbon_picture.h"
#include "foundation/ui_timer.h"
#include "foundation/variant.h"

namespace qv {

class TaskPanes;

/// What the ribbon asks and what its buttons do. Nothing here fails the ribbon: a text falls back to the
/// control's id, a picture to none. Host UI thread.
class RibbonCallbacks {
 public:
  /// The panes outlive it.
  explicit RibbonCallbacks(TaskPanes& panes) : panes_(panes) {}

  /// Runs the callback of a dispatch id. `argument` is the callback's one argument, the control or at the
  /// ribbon's load the ribbon itself, and may be null; `result` is empty and may be null.
  void Call(DISPID id, IDispatch* argument, VARIANT* result);

  /// Lets go of the ribbon and of what its pictures needed at the end of the connection.
  void ReleaseRibbon();

 private:
  void KeepRibbon(IDispatch* ribbon);
  /// The UI language, read from the settings once for all texts of a ribbon until it is invalidated: a host
  /// asks for one after the other.
  [[nodiscard]] const std::wstring& Language();
  /// Null for a control without an icon and when the icon cannot be loaded.
  [[nodiscard]] ComPtr<IDispatch> Image(const RibbonControlNames& control);
  /// Has every label, tip and picture fetched again; a busy host is asked once more later.
  void InvalidateRibbon();
  void Press(const RibbonCommand& command, IDispatch* control);

  TaskPanes& panes_;
  ComPtr<IDispatch> ribbon_;
  std::optional<std::wstring> language_;
  UiTimer secondTry_;
  RibbonPictures pictures_;
};

}  // namespace qv
