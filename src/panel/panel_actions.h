#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qv {

/// One message of the page: its "action" and the whole JSON text.
struct PanelMessage {
  std::wstring action;
  std::wstring text;
};

/// What the page can ask for, one member a group of actions. A member that nobody overrides makes its actions
/// known but without effect.
class PanelActions {
 public:
  virtual ~PanelActions() = default;

  virtual void OpenWorkspace(const PanelMessage&) {}
  virtual void CloseWorkspace(const PanelMessage&) {}
  virtual void FocusWorkspace(const PanelMessage&) {}
  virtual void OpenImagePreview(const PanelMessage&) {}
  virtual void CloseImagePreview(const PanelMessage&) {}
  virtual void ClearAccessToken(const PanelMessage&) {}
  virtual void SetAccessToken(const PanelMessage&) {}
  virtual void RequestAccessToken(const PanelMessage&) {}
  virtual void GetFontList(const PanelMessage&) {}
  virtual void Trace(const PanelMessage&) {}
  virtual void TranslateBatchResult(const PanelMessage&) {}
  virtual void TerminologyResolveResult(const PanelMessage&) {}
  virtual void DocKeyGet(const PanelMessage&) {}
  virtual void ExportLocalSnapshot(const PanelMessage&) {}
  virtual void ClientInfoGet(const PanelMessage&) {}
  virtual void UiLangGet(const PanelMessage&) {}
  virtual void Start(const PanelMessage&) {}
  virtual void Cancel(const PanelMessage&) {}
  virtual void Pause(const PanelMessage&) {}
  virtual void Resume(const PanelMessage&) {}
  virtual void RestoreParagraph(const PanelMessage&) {}
  virtual void ApplyParagraph(const PanelMessage&) {}
  virtual void SetExcelDisplayMode(const PanelMessage&) {}
  virtual void SetTargetStyle(const PanelMessage&) {}
  virtual void RestoreAll(const PanelMessage&) {}
  virtual void ApplyAll(const PanelMessage&) {}
  virtual void RequestImageSelectionPreview(const PanelMessage&) {}
  virtual void RequestSelectionPreview(const PanelMessage&) {}
  virtual void ImageTranslation(const PanelMessage&) {}
  virtual void WorkbookTool(const PanelMessage&) {}
  virtual void AgentService(const PanelMessage&) {}
  virtual void QuickTranslate(const PanelMessage&) {}
  virtual void QuickTranslateWrite(const PanelMessage&) {}
};

struct PanelActionRow {
  std::wstring_view name;
  void (PanelActions::*handle)(const PanelMessage&);
};

/// Every action by name, in the order in which they are compared.
[[nodiscard]] std::span<const PanelActionRow> PanelActionTable();

/// Runs the row whose name equals the message's action (case matters); any other action has no effect.
void RoutePanelMessage(PanelActions& actions, const PanelMessage& message);

}  // namespace qv
