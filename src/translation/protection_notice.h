#pragma once

#include "foundation/panel_output.h"
#include "workbook/cell_access.h"
#include "workbook/cell_unit.h"
#include "workbook/target_context.h"

namespace qv {

/// Logs writes that the host refused, and tells the user once a run why. Host UI thread.
class ProtectionNotice {
 public:
  /// Both outlive the notice.
  ProtectionNotice(const TargetContext& target, PanelOutput& output) : target_(target), output_(output) {}

  void OnWriteFailed(const CellUnit& unit, const CellWriteResult& result, bool bilingual);

  /// A write that was given up because the host stayed busy: logged, but nothing for the user to unlock.
  void OnWriteGivenUp(const CellUnit& unit, const CellWriteResult& result, bool bilingual);

 private:
  const TargetContext& target_;
  PanelOutput& output_;
  bool given_ = false;
};

}  // namespace qv
