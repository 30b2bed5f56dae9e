#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/panel_output.h"
#include "translation/display_mode.h"
#include "translation/start_request.h"
#include "translation/translation_session.h"
#include "translation/unit_pass.h"
#include "workbook/target_context.h"

namespace qv {

/// What is asked of the session's cells.
struct DisplayRequest {
  enum class Kind {
    kSwitch,
    kRestyle,
    kRestoreAll,
    kApplyAll,
    kRestoreOne,
    kApplyOne,
    /// Not the page's: a run reads source texts.
    kBeforeCollect,
  };

  Kind kind;
  DisplayMode mode = DisplayMode::kOriginal;
  DisplayScope scope = DisplayScope::kSession;
  /// Of a single unit, 0-based.
  std::size_t index = 0;
  TargetFont font{};
  /// What is to be collected; empty for all sheets.
  std::wstring sheetName{};

  [[nodiscard]] bool IsRestore() const;
  /// The page waits for an answer that can say no.
  [[nodiscard]] bool CanBeRefused() const { return kind == Kind::kSwitch || kind == Kind::kRestyle; }
};

/// How a request is carried out.
struct DisplayPlan {
  /// Nothing could be found out; the same request may be planned later.
  bool isHostBusy = false;
  /// Null when nothing is to be done.
  std::unique_ptr<UnitPass> pass;
  /// Why the request fails whatever the pass does; else empty.
  std::wstring_view message;
};

/// Finds out what the request means now. A new style or layout is taken over by the session here. All outlive
/// the plan. Host UI thread.
[[nodiscard]] DisplayPlan PlanRequest(const DisplayRequest& request, TargetContext& target,
                                      PanelOutput& output, TranslationSession& session);

/// Why a request failed that changed nothing but failed somewhere; empty for any other.
[[nodiscard]] std::wstring_view FailureMessage(const DisplayRequest& request, const DisplayTally& tally);
/// Why a request failed that could not even be planned.
[[nodiscard]] std::wstring_view UnplannedMessage(const DisplayRequest& request);

/// Logs what became of the request and tells the page. A request with a message is one that failed.
void ReportResult(const DisplayRequest& request, const DisplayTally& tally, std::wstring_view message,
                  PanelOutput& output);

}  // namespace qv
