#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/access_tokens.h"
#include "foundation/pane_context.h"
#include "panel/agent_services.h"
#include "panel/image_preview_window.h"
#include "panel/panel_actions.h"
#include "panel/panel_bridge.h"
#include "panel/panel_navigator.h"
#include "panel/workspace_window.h"
#include "tools/image_translation.h"
#include "tools/workbook_tools.h"
#include "translation/quick_translate_worker.h"
#include "translation/run_controller.h"
#include "translation/selection_preview_reader.h"
#include "workbook/target_context.h"

namespace qv {

/// Carries out the page's requests for one pane: decodes the fields that an action needs and hands them to
/// whoever owns it. UI thread, outside browser events.
class PaneActions final : public PanelActions {
 public:
  /// `context` is shared with workers that may outlive the pane; the others outlive the actions.
  PaneActions(std::shared_ptr<PaneContext> context, PanelBridge& bridge, WorkspaceWindow& workspace,
              ImagePreviewWindow& preview, const PanelNavigator& navigator, AccessTokens& tokens,
              const TargetContext& target, RunController& run, QuickTranslator& quickTranslator,
              SelectionPreviewReader& selectionPreview, WorkbookTools& tools, qv::ImageTranslation& images,
              AgentServices& agents)
      : context_(std::move(context)),
        bridge_(bridge),
        workspace_(workspace),
        preview_(preview),
        navigator_(navigator),
        tokens_(tokens),
        target_(target),
        run_(run),
        quickTranslator_(quickTranslator),
        selectionPreview_(selectionPreview),
        tools_(tools),
        images_(images),
        agents_(agents) {}

  void OpenWorkspace(const PanelMessage& message) override;
  void CloseWorkspace(const PanelMessage& message) override;
  void FocusWorkspace(const PanelMessage& message) override;
  void OpenImagePreview(const PanelMessage& message) override;
  void CloseImagePreview(const PanelMessage& message) override;
  void ClearAccessToken(const PanelMessage& message) override;
  void SetAccessToken(const PanelMessage& message) override;
  void RequestAccessToken(const PanelMessage& message) override;
  void GetFontList(const PanelMessage& message) override;
  void Trace(const PanelMessage& message) override;
  void TranslateBatchResult(const PanelMessage& message) override;
  void TerminologyResolveResult(const PanelMessage& message) override;
  void DocKeyGet(const PanelMessage& message) override;
  void ExportLocalSnapshot(const PanelMessage& message) override;
  void ClientInfoGet(const PanelMessage& message) override;
  void UiLangGet(const PanelMessage& message) override;
  void Start(const PanelMessage& message) override;
  void Cancel(const PanelMessage& message) override;
  void Pause(const PanelMessage& message) override;
  void Resume(const PanelMessage& message) override;
  void RestoreParagraph(const PanelMessage& message) override;
  void ApplyParagraph(const PanelMessage& message) override;
  void SetExcelDisplayMode(const PanelMessage& message) override;
  void SetTargetStyle(const PanelMessage& message) override;
  void RestoreAll(const PanelMessage& message) override;
  void ApplyAll(const PanelMessage& message) override;
  void RequestImageSelectionPreview(const PanelMessage& message) override;
  void RequestSelectionPreview(const PanelMessage& message) override;
  void ImageTranslation(const PanelMessage& message) override;
  void WorkbookTool(const PanelMessage& message) override;
  void AgentService(const PanelMessage& message) override;
  void QuickTranslate(const PanelMessage& message) override;
  void QuickTranslateWrite(const PanelMessage& message) override;

 private:
  void Reply(const PanelMessage& message, std::wstring_view data);
  [[nodiscard]] std::wstring DocumentKey() const;

  std::shared_ptr<PaneContext> context_;
  PanelBridge& bridge_;
  WorkspaceWindow& workspace_;
  ImagePreviewWindow& preview_;
  const PanelNavigator& navigator_;
  AccessTokens& tokens_;
  const TargetContext& target_;
  RunController& run_;
  QuickTranslator& quickTranslator_;
  SelectionPreviewReader& selectionPreview_;
  WorkbookTools& tools_;
  qv::ImageTranslation& images_;
  AgentServices& agents_;
};

}  // namespace qv
