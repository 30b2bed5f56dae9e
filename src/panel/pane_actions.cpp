#include "panel/pane_actions.h"

#include "foundation/identity.h"
#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/settings.h"
#include "foundation/text.h"
#include "panel/fonts.h"
#include "panel/page_scripts.h"
#include "panel/pane_timers.h"
#include "translation/local_snapshot_worker.h"
#include "translation/quick_write.h"
#include "workbook/automation.h"
#include "workbook/doc_key.h"

namespace qv {
namespace {

wchar_t LowerUnit(wchar_t unit) {
  // A pointer whose upper bits are zero stands for a single character.
  const auto character = reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(unit));
  return static_cast<wchar_t>(reinterpret_cast<ULONG_PTR>(CharLowerW(character)));
}

}  // namespace

void PaneActions::OpenWorkspace(const PanelMessage& message) {
  workspace_.Open(JsonGetString(message.text, L"page"));
}

void PaneActions::CloseWorkspace(const PanelMessage&) {
  workspace_.Close();
}

void PaneActions::FocusWorkspace(const PanelMessage&) {
  workspace_.Focus();
}

void PaneActions::OpenImagePreview(const PanelMessage& message) {
  preview_.Open(ReadImagePreview(message.text));
}

void PaneActions::CloseImagePreview(const PanelMessage&) {
  preview_.Close();
}

void PaneActions::ClearAccessToken(const PanelMessage&) {
  tokens_.SignOut();
  PaneLog(L"OnJsMessage clearAccessToken cleared native token\r\n");
}

void PaneActions::SetAccessToken(const PanelMessage& message) {
  if (!tokens_.Store(TokenOfMessage(message.text)))
    PaneLog(L"OnJsMessage setAccessToken ignored empty token\r\n");
}

void PaneActions::RequestAccessToken(const PanelMessage&) {
  bridge_.SendAccessTokenToPanel();
}

void PaneActions::GetFontList(const PanelMessage&) {
  bridge_.PostPanelJson(FontListMessage(InstalledFontFamilies()));
}

void PaneActions::Trace(const PanelMessage& message) {
  PaneLog(Concat(L"panel.trace phase=", JsonGetString(message.text, L"phase"), L" detail=",
                 JsonGetString(message.text, L"detail"), L" jsTokenLen=",
                 JsonGetInt(message.text, L"jsTokenLen"), L"\r\n"));
}

void PaneActions::TranslateBatchResult(const PanelMessage& message) {
  run_.OnBatchResult(message.text);
}

void PaneActions::TerminologyResolveResult(const PanelMessage& message) {
  run_.OnTerminologyResult(message.text);
}

void PaneActions::DocKeyGet(const PanelMessage& message) {
  Reply(message, DocKeyData(DocumentKey()));
}

void PaneActions::ExportLocalSnapshot(const PanelMessage& message) {
  AnswerWithLocalSnapshot(context_, bridge_, JsonGetString(message.text, L"requestId"));
}

void PaneActions::ClientInfoGet(const PanelMessage& message) {
  Reply(message, BuildClientInfo(GatherClientFacts()));
}

void PaneActions::UiLangGet(const PanelMessage& message) {
  Reply(message, UiLangData(GetUiLanguage()));
}

void PaneActions::Start(const PanelMessage& message) {
  const std::wstring token = TokenOfMessage(message.text);
  if (!token.empty()) static_cast<void>(tokens_.Store(token));
  // A preview that is still to come would disturb the run.
  KillTimer(context_->Window(), kPreviewTimer);
  run_.Start(message.action, message.text);
}

void PaneActions::Cancel(const PanelMessage&) {
  run_.Cancel();
}

void PaneActions::Pause(const PanelMessage&) {
  run_.Pause();
}

void PaneActions::Resume(const PanelMessage&) {
  run_.Resume();
}

void PaneActions::RestoreParagraph(const PanelMessage& message) {
  if (JsonHasKey(message.text, L"index")) run_.Display().RestoreUnit(JsonGetInt(message.text, L"index"));
}

void PaneActions::ApplyParagraph(const PanelMessage& message) {
  if (JsonHasKey(message.text, L"index")) run_.Display().ApplyUnit(JsonGetInt(message.text, L"index"));
}

void PaneActions::SetExcelDisplayMode(const PanelMessage& message) {
  run_.Display().SetMode(JsonGetString(message.text, L"mode"), JsonGetString(message.text, L"scope"));
}

void PaneActions::SetTargetStyle(const PanelMessage& message) {
  run_.Display().SetTargetStyle(ParseTargetFont(message.text));
}

void PaneActions::RestoreAll(const PanelMessage&) {
  run_.Display().RestoreAll();
}

void PaneActions::ApplyAll(const PanelMessage&) {
  run_.Display().ApplyAll();
}

void PaneActions::RequestImageSelectionPreview(const PanelMessage&) {
  if (navigator_.CurrentPage() == kImageTranslatePage) images_.PushSelectionPreview();
}

void PaneActions::RequestSelectionPreview(const PanelMessage&) {
  if (navigator_.CurrentPage() != kImageTranslatePage) selectionPreview_.Push();
}

void PaneActions::ImageTranslation(const PanelMessage& message) {
  images_.HandleImageTranslateMessage(message.action, message.text);
}

void PaneActions::WorkbookTool(const PanelMessage& message) {
  tools_.HandleAutofillMessage(message.action, message.text);
}

void PaneActions::AgentService(const PanelMessage& message) {
  const std::wstring reply = agents_.Handle(message);
  if (!reply.empty()) bridge_.RunPanelScript(reply);
}

void PaneActions::QuickTranslate(const PanelMessage& message) {
  quickTranslator_.Translate(message.text);
}

void PaneActions::QuickTranslateWrite(const PanelMessage& message) {
  WriteQuickTranslation(target_, bridge_, message.text);
}

void PaneActions::Reply(const PanelMessage& message, std::wstring_view data) {
  bridge_.RunPanelScript(BuildReplyScript(JsonGetString(message.text, L"requestId"), true, data));
}

std::wstring PaneActions::DocumentKey() const {
  if (IDispatch* const pinned = target_.Pinned().workbook.Get()) {
    Variant name;
    SCODE exceptionCode = 0;
    const HRESULT hr = GetProperty(pinned, L"FullName", name, &exceptionCode);
    // A busy host's workbook is still the pane's own; only one that is gone gives way to the active one.
    if (SUCCEEDED(hr) || IsHostBusy(hr, exceptionCode)) return DocKey(name.Text(), LowerUnit);
  }
  const ComPtr<IDispatch> active = GetDispProperty(target_.Application(), L"ActiveWorkbook");
  if (active == nullptr) return std::wstring(kNoDocumentKey);
  return DocKey(GetStringProperty(active.Get(), L"FullName"), LowerUnit);
}

}  // namespace qv
