#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"

namespace qv {

/// Translates the short texts that the page sends, each on a worker of its own and whatever a run does.
/// Answers come in any order; those of a pane that has closed are dropped. Host UI thread.
class QuickTranslator {
 public:
  /// Workers share `context`; `output` is there whenever a task of the pane runs.
  QuickTranslator(std::shared_ptr<PaneContext> context, PanelOutput& output)
      : context_(std::move(context)), output_(output) {}

  /// "quickTranslate" with the page's whole message. Every failure reaches the page as its answer.
  void Translate(std::wstring_view message);

 private:
  std::shared_ptr<PaneContext> context_;
  PanelOutput& output_;
};

}  // namespace qv
