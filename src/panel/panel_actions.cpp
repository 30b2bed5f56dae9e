#include "panel/panel_actions.h"

namespace qv {
namespace {

constexpr PanelActionRow kRows[] = {
    {L"openWorkspace", &PanelActions::OpenWorkspace},
    {L"closeWorkspace", &PanelActions::CloseWorkspace},
    {L"focusWorkspace", &PanelActions::FocusWorkspace},
    {L"openImagePreview", &PanelActions::OpenImagePreview},
    {L"closeImagePreview", &PanelActions::CloseImagePreview},
    {L"clearAccessToken", &PanelActions::ClearAccessToken},
    {L"setAccessToken", &PanelActions::SetAccessToken},
    {L"requestAccessToken", &PanelActions::RequestAccessToken},
    {L"getFontList", &PanelActions::GetFontList},
    {L"trace", &PanelActions::Trace},
    {L"translateBatchResult", &PanelActions::TranslateBatchResult},
    {L"terminologyResolveResult", &PanelActions::TerminologyResolveResult},
    {L"docKeyGet", &PanelActions::DocKeyGet},
    {L"exportLocalSnapshot", &PanelActions::ExportLocalSnapshot},
    {L"clientInfoGet", &PanelActions::ClientInfoGet},
    {L"uiLangGet", &PanelActions::UiLangGet},
    {L"start", &PanelActions::Start},
    {L"restart", &PanelActions::Start},
    {L"startSelection", &PanelActions::Start},
    {L"cancel", &PanelActions::Cancel},
    {L"pause", &PanelActions::Pause},
    {L"resume", &PanelActions::Resume},
    {L"restoreParagraph", &PanelActions::RestoreParagraph},
    {L"applyParagraph", &PanelActions::ApplyParagraph},
    {L"setExcelDisplayMode", &PanelActions::SetExcelDisplayMode},
    {L"setTargetStyle", &PanelActions::SetTargetStyle},
    {L"restoreAll", &PanelActions::RestoreAll},
    {L"applyAll", &PanelActions::ApplyAll},
    {L"requestImageSelectionPreview", &PanelActions::RequestImageSelectionPreview},
    {L"requestSelectionPreview", &PanelActions::RequestSelectionPreview},
    {L"imageTranslateExtract", &PanelActions::ImageTranslation},
    {L"imageTranslateReplace", &PanelActions::ImageTranslation},
    {L"imageTranslateUndoReplace", &PanelActions::ImageTranslation},
    {L"imageTranslateScan", &PanelActions::ImageTranslation},
    {L"imageTranslateCount", &PanelActions::ImageTranslation},
    {L"imageTranslateClearBatchUndo", &PanelActions::ImageTranslation},
    {L"imageTranslateBatchUndo", &PanelActions::ImageTranslation},
    {L"autofillScan", &PanelActions::WorkbookTool},
    {L"autofillApply", &PanelActions::WorkbookTool},
    {L"autofillUndo", &PanelActions::WorkbookTool},
    {L"excelReadRange", &PanelActions::WorkbookTool},
    {L"excelWriteRange", &PanelActions::WorkbookTool},
    {L"excelFormatRange", &PanelActions::WorkbookTool},
    {L"excelSetSize", &PanelActions::WorkbookTool},
    {L"excelMergeCells", &PanelActions::WorkbookTool},
    {L"excelUnmergeCells", &PanelActions::WorkbookTool},
    {L"excelGetWriteContext", &PanelActions::WorkbookTool},
    {L"excelRangeHasContent", &PanelActions::WorkbookTool},
    {L"excelPushUndoMarker", &PanelActions::WorkbookTool},
    {L"excelUndoMessage", &PanelActions::WorkbookTool},
    {L"excelListSheets", &PanelActions::WorkbookTool},
    {L"excelSetActiveSheet", &PanelActions::WorkbookTool},
    {L"excelAddSheet", &PanelActions::WorkbookTool},
    {L"excelDeleteSheet", &PanelActions::WorkbookTool},
    {L"excelRenameSheet", &PanelActions::WorkbookTool},
    {L"excelDeleteRowsCols", &PanelActions::WorkbookTool},
    {L"excelInsertRowsCols", &PanelActions::WorkbookTool},
    {L"excelRemoveDuplicates", &PanelActions::WorkbookTool},
    {L"excelCalcSetMode", &PanelActions::WorkbookTool},
    {L"excelCalculateNow", &PanelActions::WorkbookTool},
    {L"excelCalcGetMode", &PanelActions::WorkbookTool},
    {L"excelScreenshotRange", &PanelActions::WorkbookTool},
    {L"excelChartCreate", &PanelActions::WorkbookTool},
    {L"detectAgents", &PanelActions::AgentService},
    {L"installAgentMcp", &PanelActions::AgentService},
    {L"launchAgent", &PanelActions::AgentService},
    {L"getMcpServerStatus", &PanelActions::AgentService},
    {L"ensureMcpServer", &PanelActions::AgentService},
    {L"stopMcpServer", &PanelActions::AgentService},
    {L"installOpencode", &PanelActions::AgentService},
    {L"quickTranslate", &PanelActions::QuickTranslate},
    {L"quickTranslateWrite", &PanelActions::QuickTranslateWrite},
};

}  // namespace

std::span<const PanelActionRow> PanelActionTable() {
  return kRows;
}

void RoutePanelMessage(PanelActions& actions, const PanelMessage& message) {
  for (const PanelActionRow& row : kRows) {
    if (row.name != message.action) continue;
    (actions.*row.handle)(message);
    return;
  }
}

}  // namespace qv
