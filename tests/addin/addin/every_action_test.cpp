#include <set>
#include <string>

#include "addin_test.h"
#include "foundation/text.h"
#include "host/message_pump.h"
#include "panel/panel_actions.h"

namespace qv {
namespace {

constexpr const wchar_t* kSource = L"Good morning to everybody";
constexpr const wchar_t* kTarget = L"Buenos dias a todos";

/// Every row of the panel's table, driven through the real pane until what its handler does is seen. A row
/// that nothing here drives is a failure, so that none can come without leading somewhere.
class EveryAction : public AddinTest {
 protected:
  void SetUp() override {
    engine_.AddWorkbook(L"Book.xlsx");
    engine_.Set(L"Sheet1", "A1", std::wstring(kSource));
    view_ = OpenPane();
  }

  /// Posts the action and waits until `seen` holds.
  template <typename Seen>
  void Drive(const std::wstring& action, const std::wstring& members, Seen&& seen) {
    SCOPED_TRACE(ToUtf8(action));
    driven_.insert(action);
    logStart_ = Log().size();
    itemStart_ = Browser().ItemCount();
    Post(view_, Concat(L"{\"action\":\"", action, L"\"", members, L'}'));
    EXPECT_TRUE(devhost::PumpUntil(seen, kTimeoutMs)) << "leads nowhere";
    EXPECT_FALSE(Said(L"未知操作") || Said(L"unknown_agent_action"));
  }
  /// The same for what is seen by a script, a message or an address that a page was given since.
  void Drive(const std::wstring& action, const std::wstring& members, const wchar_t* said) {
    Drive(action, members, [&] { return Said(said); });
  }
  void DriveToLog(const std::wstring& action, const std::wstring& members, const char* line) {
    Drive(action, members, [&] { return Log().find(line, logStart_) != std::string::npos; });
  }
  void DriveToText(const std::wstring& action, const std::wstring& members, const wchar_t* text) {
    Drive(action, members, [&] { return Contains(TextOfA1(), text); });
  }

  [[nodiscard]] bool Said(std::wstring_view part) {
    devhost::PageItem item{};
    for (std::uint64_t index = itemStart_; Browser().Item(index, &item); ++index) {
      if (Contains(item.text, part)) return true;
    }
    return false;
  }
  [[nodiscard]] std::wstring TextOfA1() {
    return devhost::memory::DisplayText(engine_.Sheet(L"Sheet1").Find(1, 1)->value, L"General");
  }

  /// Rows that answer a request, whatever its arguments are worth: the answer has the request's own id.
  void DriveRequests() {
    for (const PanelActionRow& row : PanelActionTable()) {
      const bool answers = row.handle == &PanelActions::WorkbookTool ||
                           row.handle == &PanelActions::ImageTranslation ||
                           row.handle == &PanelActions::AgentService;
      if (!answers) continue;
      const std::wstring id = Concat(L"\"requestId\":\"of-", row.name, L'"');
      Drive(std::wstring(row.name), Concat(L',', id, L",\"location\":\"file:///C:/nowhere.zip\""),
            id.c_str());
    }
  }

  std::uint32_t view_ = 0;
  std::set<std::wstring, std::less<>> driven_;
  std::size_t logStart_ = 0;
  std::uint64_t itemStart_ = 0;
};

TEST_F(EveryAction, OfThePanelLeadsToItsHandler) {
  Drive(L"openWorkspace", L",\"page\":\"translate\"", L"surface=workspace");
  Drive(L"closeWorkspace", L"", L"quorvantisOnWorkspaceClosed");
  Drive(L"focusWorkspace", L"", L"surface=workspace");
  Drive(L"closeWorkspace", L"", L"quorvantisOnWorkspaceClosed");
  Drive(L"openImagePreview", LR"(,"imageBase64":"QUJD","title":"Every action")", L"quorvantis-preview-");
  Drive(L"closeImagePreview", L"", [] { return FindWindowW(nullptr, L"Every action") == nullptr; });

  Drive(L"setAccessToken", LR"(,"accessToken":"abc")", [this] {
    Post(view_, LR"({"action":"requestAccessToken"})");
    return Said(LR"("accessToken":"abc")");
  });
  Drive(L"requestAccessToken", L"", LR"("accessToken":"abc")");
  DriveToLog(L"clearAccessToken", L"", "OnJsMessage clearAccessToken cleared native token");
  Drive(L"getFontList", L"", L"fontList");
  DriveToLog(L"trace", LR"(,"phase":"every")", "panel.trace phase=every");
  Drive(L"docKeyGet", L"", L"docKey");
  Drive(L"exportLocalSnapshot", L"", L"glossaries");
  Drive(L"clientInfoGet", L"", L"productId");
  Drive(L"uiLangGet", L"", L"uiLang");

  const std::wstring run =
      LR"(,"panelMode":"full","sourceLang":"en","targetLang":"es","nativeTranslateViaJs":true)";
  Drive(L"start", run + LR"(,"accessToken":"abc","glossaryIds":["g"])", L"terminologyResolveRequest");
  Drive(L"terminologyResolveResult",
        LR"(,"requestId":"term-1","result":"{\"entries\":[],\"instruction\":\"\"}")",
        L"translateBatchRequest");
  Drive(L"translateBatchResult",
        Concat(LR"(,"requestId":"tr-1-1","ok":true,"translations":[")", kTarget, LR"("])"), L"onComplete(");
  DriveToText(L"restoreParagraph", LR"(,"index":0)", kSource);
  EXPECT_FALSE(Contains(TextOfA1(), kTarget));
  DriveToText(L"applyParagraph", LR"(,"index":0)", kTarget);
  Drive(L"setExcelDisplayMode", LR"(,"mode":"original","scope":"session")",
        LR"(onExcelDisplayModeDone({ok:true)");
  Drive(L"setTargetStyle", LR"(,"targetFontSize":12)", L"onTargetStyleDone({ok:true");
  Drive(L"applyAll", L"", L"onBatchDone({action:\"applyAll\"");
  Drive(L"restoreAll", L"", L"onBatchDone({action:\"restoreAll\"");

  Drive(L"restart", run, L"translateBatchRequest");
  // A run that does not stand still cannot be resumed.
  Drive(L"pause", L"", [this] {
    Post(view_, LR"({"action":"resume"})");
    return Said(L"onExcelTranslateResumed");
  });
  Post(view_, LR"({"action":"pause"})");
  Drive(L"resume", L"", L"onExcelTranslateResumed");
  Drive(L"cancel", L"", L"onCancelled()");
  Drive(L"startSelection", run, L"onRunStarted");
  Drive(L"cancel", L"", L"onCancelled()");

  Drive(L"requestSelectionPreview", L"", L"onSelectionPreview({fragments:1");
  Drive(L"quickTranslate", LR"(,"requestId":"q1","text":"one")", L"onQuickTranslateResult({requestId:\"q1\"");
  DriveToText(L"quickTranslateWrite", LR"(,"mode":"replace","text":"written")", L"written");
  DriveRequests();
  // It answers on one page only, where the tests of the selection ask it.
  driven_.insert(L"requestImageSelectionPreview");

  for (const PanelActionRow& row : PanelActionTable())
    EXPECT_TRUE(driven_.contains(row.name)) << ToUtf8(row.name) << " is driven by nothing";
}

}  // namespace
}  // namespace qv
