#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"已刪除 {count} 個空白列。"},
    {L"blank.excel.failed", L"\n有 {count} 列無法刪除（工作表可能受到保護）。"},
    {L"blank.excel.foundFailed",
     L"找到 {count} 個空白列，但均未刪除（{failed} 列失敗）。\n\n"
     L"請確認工作表未受保護。"},
    {L"blank.excel.none", L"找不到空白列。"},
    {L"blank.excel.noneHint",
     L"\n\n在使用範圍內，只有所有儲存格都空白且不含公式的列才會被刪除。選取多列時，只會掃描選取的列；"
     L"只選取一個儲存格或一列時，則會掃描整個使用範圍。"},
    {L"blank.excel.prompt", L"找到 {count} 個空白列。要刪除嗎？"},
    {L"blank.excel.title", L"刪除空白列"},
    {L"blank.word.deleted", L"已刪除 {count} 個空白行。"},
    {L"blank.word.failed", L"\n有 {count} 行無法刪除（文件可能受到保護）。"},
    {L"blank.word.foundFailed",
     L"找到 {count} 個空白行，但均未刪除（{failed} 行失敗）。\n\n"
     L"請確認文件未受保護。"},
    {L"blank.word.kept", L"\n有 {count} 行因文件需要而保留（例如表格或分節符號前的空白行）。"},
    {L"blank.word.none", L"找不到空白行。"},
    {L"blank.word.noneHint",
     L"\n\n只有段落中沒有文字、圖片和分隔符號的行才會被刪除。有選取內容時，只會掃描選取的段落；"
     L"沒有選取內容時，則會掃描整份文件。"},
    {L"blank.word.prompt", L"找到 {count} 個空白行。要刪除嗎？"},
    {L"blank.word.title", L"刪除空白行"},
    {L"msg.browserFailed", L"無法開啟瀏覽器。請檢查系統的預設瀏覽器。"},
    {L"msg.createPaneFailed", L"無法建立工作窗格。\nHRESULT：{hr}"},
    {L"msg.hostNotReady.excel", L"Excel 尚未就緒。請重新啟動 Excel，然後再試一次。"},
    {L"msg.hostNotReady.ppt", L"PowerPoint 尚未就緒。請重新啟動 PowerPoint，然後再試一次。"},
    {L"msg.hostNotReady.word", L"Word 尚未就緒。請重新啟動 Word，然後再試一次。"},
    {L"msg.noWindow.excel", L"目前的 Excel 視窗無法使用。\n請開啟活頁簿，然後再試一次。"},
    {L"msg.noWindow.ppt", L"目前的 PowerPoint 視窗無法使用。\n請開啟簡報，然後再試一次。"},
    {L"msg.noWindow.word", L"目前的 Word 視窗無法使用。\n請開啟文件，然後再試一次。"},
    {L"msg.paneFactory.excel", L"無法建立工作窗格。\n請重新啟動 Excel，然後再試一次。"},
    {L"msg.paneFactory.ppt", L"無法建立工作窗格。\n請重新啟動 PowerPoint，然後再試一次。"},
    {L"msg.paneFactory.word", L"無法建立工作窗格。\n請重新啟動 Word，然後再試一次。"},
    {L"msg.paneTitle", L"AI 助理 \u00B7 quorvantis.example"},
    {L"msg.title", L"AI 助理"},
    {L"msg.webview2.body",
     L"瀏覽器元件啟動失敗，因此無法開啟側邊欄。\n\n"
     L"請檢查 C 磁碟機是否已滿，釋出一些空間，然後重新開啟側邊欄。\n\n"
     L"如果問題仍未解決，請聯絡技術支援：" QV_SUPPORT_CONTACT L"\n"
     L"關閉此訊息時，該聯絡資訊會複製到剪貼簿。"},
    {L"msg.welcome.body",
     L"AI 助理已安裝。要立即開啟並登入嗎？\n\n"
     L"您也可以稍後開啟功能區中的「AI 助理」索引標籤。"},
    {L"ribbon.btnAccount", L"帳戶"},
    {L"ribbon.btnAccount.tip", L"登入並檢視您的方案"},
    {L"ribbon.btnGlossary", L"詞彙表"},
    {L"ribbon.btnGlossary.tip", L"需要固定譯法的詞彙"},
    {L"ribbon.btnGrammar", L"文法檢查"},
    {L"ribbon.btnGrammar.tip", L"檢查並潤飾選取的文字"},
    {L"ribbon.btnImageTranslate", L"圖片翻譯"},
    {L"ribbon.btnImageTranslate.tip", L"翻譯圖片中的文字"},
    {L"ribbon.btnInstruction", L"翻譯指示"},
    {L"ribbon.btnInstruction.tip", L"自訂翻譯指示"},
    {L"ribbon.btnPdfTranslate", L"PDF 翻譯"},
    {L"ribbon.btnPdfTranslate.tip", L"在瀏覽器中翻譯 PDF 檔案"},
    {L"ribbon.btnQuickTranslate", L"快速翻譯"},
    {L"ribbon.btnQuickTranslate.tip", L"翻譯指標所指的單字"},
    {L"ribbon.btnSettings", L"設定"},
    {L"ribbon.btnSettings.tip", L"顯示語言"},
    {L"ribbon.btnSupport", L"技術支援"},
    {L"ribbon.btnSupport.tip", L"取得協助"},
    {L"ribbon.btnTranslateSelection", L"選取範圍"},
    {L"ribbon.btnTranslateSelection.tip", L"翻譯目前的選取範圍"},
    {L"ribbon.excel.btnAiAgents", L"程式設計代理"},
    {L"ribbon.excel.btnAiAgents.tip", L"程式設計代理"},
    {L"ribbon.excel.btnAiChat", L"AI 聊天"},
    {L"ribbon.excel.btnAiChat.tip", L"向助理詢問此活頁簿的相關問題"},
    {L"ribbon.excel.btnDeleteBlankRows", L"刪除空白列"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"刪除工作表中的空白列"},
    {L"ribbon.excel.btnImageToTable", L"圖片轉表格"},
    {L"ribbon.excel.btnImageToTable.tip", L"將表格圖片轉換為儲存格"},
    {L"ribbon.excel.btnPdfToTable", L"PDF 轉表格"},
    {L"ribbon.excel.btnPdfToTable.tip", L"將 PDF 檔案中的表格轉換為儲存格"},
    {L"ribbon.excel.btnTranslateFullDoc", L"整個工作表"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"翻譯整個工作表"},
    {L"ribbon.grpAccount", L"帳戶"},
    {L"ribbon.grpDialog", L"助理"},
    {L"ribbon.grpDocTools", L"工具"},
    {L"ribbon.grpTerminology", L"詞彙表"},
    {L"ribbon.grpTranslate", L"翻譯"},
    {L"ribbon.tabQuorvantis", L"AI 助理"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"目前投影片"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"翻譯目前的投影片"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"整份簡報"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"翻譯整份簡報"},
    {L"ribbon.word.btnAiAutofill", L"自動填寫"},
    {L"ribbon.word.btnAiAutofill.tip", L"填寫文件中的空白處"},
    {L"ribbon.word.btnAiChat", L"AI 聊天"},
    {L"ribbon.word.btnAiChat.tip", L"向助理詢問此文件的相關問題"},
    {L"ribbon.word.btnDeleteBlankLines", L"刪除空白行"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"刪除文件中的空白行"},
    {L"ribbon.word.btnImageToWord", L"圖片轉文字"},
    {L"ribbon.word.btnImageToWord.tip", L"將圖片轉換為可編輯的文字"},
    {L"ribbon.word.btnTranslateFullDoc", L"整份文件"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"翻譯整份文件"},
    {L"settings.body", L"功能區會立即更新。其他已開啟的 Office 視窗會在下次載入功能區時更新。"},
    {L"settings.cancel", L"取消"},
    {L"settings.ok", L"確定"},
    {L"settings.title", L"顯示語言"},
    {L"settings.writeFailed", L"無法儲存語言設定。請檢查您是否可以寫入使用者組態檔。"},
};

}  // namespace

CatalogRows CatalogZhTw() {
  return kRows;
}

}  // namespace qv
