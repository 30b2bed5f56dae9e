#include <string>

#include "addin_test.h"
#include "foundation/text.h"
#include "host/message_pump.h"

namespace qv {
namespace {

using devhost::PageItemKind;

constexpr DISPID kWholeSheet = 100;
constexpr DISPID kQuickTranslate = 104;
constexpr DISPID kAccount = 106;
constexpr DISPID kImageTranslate = 110;

constexpr wchar_t kRequest[] = L"{\"action\":\"requestSelectionPreview\"}";
constexpr wchar_t kPreview[] = L"onSelectionPreview({fragments:";
/// Longer than the pane waits for the selection to come to rest.
constexpr DWORD kRestMs = 600;

/// A pane on one workbook whose A1 holds a text.
class SelectionInThePane : public AddinTest {
 protected:
  void SetUp() override {
    engine_.AddWorkbook(L"Book.xlsx");
    engine_.Set(L"", "A1", std::wstring(L"Some words"));
    Connect();
    Show(kWholeSheet);
  }

  /// Presses a ribbon button and waits for its page.
  void Show(DISPID button) {
    DISPPARAMS none{};
    EXPECT_EQ(host_->Session().Addin()->Invoke(button, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none,
                                               nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_NE(WaitForItem(PageItemKind::kJson, L"\"accessToken\""), "");
    pane_ = host_->Panes().OpenPanes().back();
    view_ = NewestView().view;
  }

  /// Lets so much time go by that every preview that is still to come has come; how many have in all.
  int PreviewsAtRest() {
    static_cast<void>(devhost::PumpUntil([] { return false; }, kRestMs));
    int previews = 0;
    devhost::PageItem item{};
    for (std::uint64_t index = 0; Browser().Item(index, &item); ++index)
      previews += item.kind == PageItemKind::kScript && Contains(item.text, kPreview) ? 1 : 0;
    return previews;
  }

  std::uint32_t view_ = 0;
};

TEST_F(SelectionInThePane, IsShownOnRequestButNotToTheImagePage) {
  Post(view_, kRequest);
  EXPECT_EQ(WaitForItem(PageItemKind::kScript, L"onSelectionPreview"),
            "if(window.onSelectionPreview)onSelectionPreview({fragments:1,chars:10,rangeAddress:\"$A$1\","
            "translatedCellsOnSheet:0,translatedCellsInSelection:0,quickText:\"Some words\"})");
  const int before = PreviewsAtRest();
  Show(kImageTranslate);
  Post(view_, kRequest);
  EXPECT_EQ(PreviewsAtRest(), before);
  Show(kAccount);
  Post(view_, kRequest);
  EXPECT_EQ(PreviewsAtRest(), before + 1);
}

TEST_F(SelectionInThePane, OfPicturesIsShownToTheImagePageOnly) {
  const auto pixels = std::make_shared<devhost::memory::PictureData>(
      devhost::memory::PictureData{2, 1, {0xFF112233, 0xFF445566}});
  const auto picture = engine_.AddPicture(L"Sheet1", L"Photo", pixels);
  engine_.SelectShapes(L"Sheet1", {picture});
  constexpr wchar_t kImageRequest[] = L"{\"action\":\"requestImageSelectionPreview\"}";
  Post(view_, kImageRequest);
  static_cast<void>(PreviewsAtRest());
  EXPECT_FALSE(WasSent(L"onImageSelectionPreview"));
  Show(kImageTranslate);
  Post(view_, kImageRequest);
  EXPECT_NE(WaitForItem(PageItemKind::kScript,
                        L"onImageSelectionPreview({\"scope\":\"shape\",\"anchor\":{\"v\":1,"),
            "");
  Post(view_, L"{\"action\":\"imageTranslateCount\",\"requestId\":\"i1\"}");
  EXPECT_EQ(
      WaitForItem(PageItemKind::kScript, L"\"i1\""),
      "if(window.QuorvantisTerminology)QuorvantisTerminology._onResponse({\"requestId\":\"i1\",\"ok\":true,"
      "\"data\":{\"ok\":true,\"count\":1,\"skippedUnsupported\":0,\"sheetSummary\":[{\"sheetName\":"
      "\"Sheet1\",\"count\":1,\"anchors\":[]}]}});");
}

TEST_F(SelectionInThePane, IsShownOnceItHasComeToRest) {
  const int before = PreviewsAtRest();
  for (const char* address : {"B1", "B2", "A1:B3", "A1:C3"})
    engine_.Select(L"Sheet1", address);
  EXPECT_NE(WaitForItem(PageItemKind::kScript, L"fragments:1,chars:10,rangeAddress:\"$A$1:$C$3\""), "");
  EXPECT_EQ(PreviewsAtRest(), before + 1);
  // Also when what it holds has changed.
  engine_.Type(L"Sheet1", "B2", L"More");
  EXPECT_NE(WaitForItem(PageItemKind::kScript, L"fragments:2,chars:14,"), "");
  Show(kQuickTranslate);
  engine_.Select(L"Sheet1", "B2");
  EXPECT_NE(WaitForItem(PageItemKind::kScript, L"quickText:\"More\""), "");
}

TEST_F(SelectionInThePane, IsAskedForOnlyAfterAnEvent) {
  static_cast<void>(PreviewsAtRest());
  engine_.ResetCounters();
  static_cast<void>(PreviewsAtRest());
  EXPECT_EQ(engine_.Calls("Window.Selection"), 0U);
  // A host whose cell is being edited is left alone.
  const int before = PreviewsAtRest();
  engine_.Faults().Fail({.error = {DISP_E_EXCEPTION, devhost::memory::kHostBusy}});
  engine_.Select(L"Sheet1", "B2");
  EXPECT_EQ(PreviewsAtRest(), before);
  EXPECT_FALSE(WasSent(L"onSelectionPreview({error"));
  engine_.Fault({{"clear", true}});
}

TEST_F(SelectionInThePane, IsNotShownByItselfDuringARunOrOnOtherPages) {
  const int before = PreviewsAtRest();
  // The timer is running when the run begins.
  engine_.Select(L"Sheet1", "A1:A2");
  Post(view_, L"{\"action\":\"start\",\"nativeTranslateViaJs\":true,\"targetLang\":\"es\"}");
  EXPECT_NE(WaitForItem(PageItemKind::kJson, L"translateBatchRequest"), "");
  engine_.Select(L"Sheet1", "A1:A3");
  EXPECT_EQ(PreviewsAtRest(), before);

  Post(view_, L"{\"action\":\"cancel\"}");
  engine_.Select(L"Sheet1", "A1:A4");
  EXPECT_NE(WaitForItem(PageItemKind::kScript, L"rangeAddress:\"$A$1:$A$4\""), "");

  Show(kAccount);
  const int beforeAccount = PreviewsAtRest();
  engine_.Select(L"Sheet1", "A1:A5");
  EXPECT_EQ(PreviewsAtRest(), beforeAccount);
}

TEST_F(SelectionInThePane, TakesAQuickTranslation) {
  Post(view_, L"{\"action\":\"quickTranslateWrite\",\"mode\":\"insert\",\"text\":\"Unas palabras\"}");
  EXPECT_EQ(engine_.Cell(L"Sheet1", "A1").at("value"), "Some words\nUnas palabras");
  // Nothing listens there.
  Post(view_, L"{\"action\":\"quickTranslate\",\"requestId\":\"q7\",\"text\":\"Hi\",\"token\":\"secret\"}");
  EXPECT_EQ(WaitForItem(PageItemKind::kScript, L"onQuickTranslateResult({requestId:\"q7\""),
            "(function(){if(typeof window.onQuickTranslateResult!=='function')return;"
            "window.onQuickTranslateResult({requestId:\"q7\",ok:false,error:\"HTTP request failed\"});})();");
  EXPECT_TRUE(InOrder(Log(), {"quickTranslate begin reqId=q7 textLen=2 jsTokenLen=6 nativeTokenLen=",
                              "quickTranslate end reqId=q7 ok=0 errLen=19\r\n"}));
  EXPECT_EQ(Log().find("secret"), std::string::npos);
}

TEST_F(SelectionInThePane, OfCellsIsToldToTheImagePageAsNoPicture) {
  Show(kImageTranslate);
  const int before = PreviewsAtRest();
  engine_.Select(L"Sheet1", "B2");
  EXPECT_EQ(WaitForItem(PageItemKind::kScript, L"onImageSelectionPreview"),
            "if(window.onImageSelectionPreview)onImageSelectionPreview({\"scope\":\"empty\"})");
  EXPECT_EQ(PreviewsAtRest(), before);
}

/// Neither a worker nor the timer may keep the pane, or talk to it afterwards.
TEST_F(SelectionInThePane, MayCloseBeforeItsAnswersCome) {
  const int before = PreviewsAtRest();
  for (int i = 0; i < 3; ++i)
    Post(view_, L"{\"action\":\"quickTranslate\",\"requestId\":\"late\",\"text\":\"Hi\"}");
  engine_.Select(L"Sheet1", "B2");
  pane_.frame->Close();
  EXPECT_EQ(PreviewsAtRest(), before);
}

}  // namespace
}  // namespace qv
