#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "foundation/ui_slices.h"
#include "tools/image_encoding.h"
#include "tools/image_job.h"
#include "tools/image_shapes.h"
#include "tools/image_undo.h"
#include "tools/tool_arguments.h"
#include "tools/tool_turns.h"
#include "workbook/target_context.h"

namespace qv {

/// The pictures of the sheets of one pane: finds and exports them for the page, puts what the page made of
/// them in their places, and takes that back. Host UI thread.
class ImageTranslation {
 public:
  /// All outlive the object. `turns` is the order in which the pane's tools run.
  ImageTranslation(std::shared_ptr<PaneContext> pane, TargetContext& target, PanelOutput& output,
                   ToolTurns& turns);

  /// Runs the action of a message of the page, once the host has worked off what was posted before, and
  /// replies to the page. `message` is the argument text too.
  void HandleImageTranslateMessage(const std::wstring& action, const std::wstring& message);

  /// Tells the page which picture is selected, as a task of its own. Nothing while the host is busy.
  void PushSelectionPreview();

  /// Drops what is under way; ahead of the target's release.
  void Close();

 private:
  /// An action's result text; nothing when a job has begun that brings it later.
  using Outcome = std::optional<std::wstring>;

  /// A job and the request that it answers.
  struct RunningJob {
    std::wstring requestId;
    std::unique_ptr<ImageJob> job;
  };

  /// A picture that an action means and its sheet, or the code of the error that says why there is none.
  struct Target {
    ComPtr<IDispatch> sheet;
    std::optional<SheetPicture> picture;
    std::wstring_view error;
  };

  struct Action {
    std::wstring_view name;
    Outcome (ImageTranslation::*run)(const ToolArguments& arguments);
  };
  static const Action kActions[];

  [[nodiscard]] bool PostTurn(std::function<void()> turn);
  void RunAndReply(const std::wstring& action, const std::wstring& message);
  [[nodiscard]] Outcome RunAction(std::wstring_view action, const std::wstring& message);
  [[nodiscard]] Outcome Scan(const ToolArguments& arguments);
  [[nodiscard]] Outcome Count(const ToolArguments& arguments);
  [[nodiscard]] Outcome Extract(const ToolArguments& arguments);
  [[nodiscard]] Outcome Replace(const ToolArguments& arguments);
  [[nodiscard]] Outcome UndoReplace(const ToolArguments& arguments);
  [[nodiscard]] Outcome BatchUndo(const ToolArguments& arguments);
  [[nodiscard]] Outcome ClearBatchUndo(const ToolArguments& arguments);

  [[nodiscard]] Outcome ScanActiveSheet(bool countOnly);
  [[nodiscard]] Target FindTarget(std::wstring_view operation, const ImageAnchor& anchor) const;
  /// The picture as the page gets it: without its turn.
  [[nodiscard]] EncodedImage ExportUpright(const Target& target) const;
  /// The picture as it is now, for its undo; without bytes when it cannot be exported or nothing would tell
  /// later whether its workbook is still the same.
  [[nodiscard]] ImageSnapshot TakeSnapshot(const Target& target, UndoBook book, bool inBatch) const;

  void ShowSelection();
  void BeginJob(std::unique_ptr<ImageJob> job) { begun_ = std::move(job); }
  void ContinueJobs();
  void RunJobSlice();
  void Reply(std::wstring_view requestId, const std::wstring& result);

  std::shared_ptr<PaneContext> pane_;
  TargetContext& target_;
  PanelOutput& output_;
  ToolTurns& turns_;
  UiSlices slices_;
  ImageUndo undo_;
  /// The job that the running action has begun.
  std::unique_ptr<ImageJob> begun_;
  /// Oldest first; slices belong to the first one until it is done.
  std::deque<std::shared_ptr<RunningJob>> jobs_;
  bool closed_ = false;
};

}  // namespace qv
