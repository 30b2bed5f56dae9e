#pragma once

#include <cstdint>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "translation/translation_session.h"
#include "workbook/target_context.h"

namespace qv {

/// Reads what the target window has selected and tells the page. Host UI thread.
class SelectionPreviewReader {
 public:
  /// All outlive the reader.
  SelectionPreviewReader(const TargetContext& target, const TranslationSession& session, PaneContext& pane,
                         PanelOutput& output)
      : target_(target), session_(session), pane_(pane), output_(output) {}

  /// One preview, or why there is none. Nothing while the host is busy: the user is editing a cell, and a
  /// preview that failed would hide the one that is shown. Nothing either when a newer push or a start came
  /// while the host was asked.
  void Push();

 private:
  const TargetContext& target_;
  const TranslationSession& session_;
  PaneContext& pane_;
  PanelOutput& output_;
  std::uint64_t pushes_ = 0;
};

}  // namespace qv
