#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"空白行を {count} 行削除しました。"},
    {L"blank.excel.failed",
     L"\n{count} 行は削除できませんでした（シートが保護されている可能性があります）。"},
    {L"blank.excel.foundFailed",
     L"空白行が {count} 行見つかりましたが、1 行も削除されませんでした（失敗 {failed} 行）。\n\n"
     L"シートが保護されていないことを確認してください。"},
    {L"blank.excel.none", L"空白行は見つかりませんでした。"},
    {L"blank.excel.noneHint",
     L"\n\n使用中の範囲では、すべてのセルが空で数式も含まない行だけが削除されます。"
     L"複数の行を選択している場合は、その行だけを調べます。1 つのセルまたは 1 行だけを選択している場合は、"
     L"使用中の範囲全体を調べます。"},
    {L"blank.excel.prompt", L"空白行が {count} 行見つかりました。削除しますか？"},
    {L"blank.excel.title", L"空白行の削除"},
    {L"blank.word.deleted", L"空白行を {count} 行削除しました。"},
    {L"blank.word.failed", L"\n{count} 行は削除できませんでした（文書が保護されている可能性があります）。"},
    {L"blank.word.foundFailed",
     L"空白行が {count} 行見つかりましたが、1 行も削除されませんでした（失敗 {failed} 行）。\n\n"
     L"文書が保護されていないことを確認してください。"},
    {L"blank.word.kept", L"\n{count} 行は文書に必要なため残しました（表やセクション区切りの前など）。"},
    {L"blank.word.none", L"空白行は見つかりませんでした。"},
    {L"blank.word.noneHint",
     L"\n\n段落に文字、画像、区切りのいずれも含まれない行だけが削除されます。選択範囲がある場合は、"
     L"選択した段落だけを調べます。選択範囲がない場合は、文書全体を調べます。"},
    {L"blank.word.prompt", L"空白行が {count} 行見つかりました。削除しますか？"},
    {L"blank.word.title", L"空白行の削除"},
    {L"msg.browserFailed", L"ブラウザーを開けませんでした。システムの既定のブラウザーを確認してください。"},
    {L"msg.createPaneFailed", L"作業ウィンドウを作成できませんでした。\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel",
     L"Excel の準備ができていません。Excel を再起動して、もう一度お試しください。"},
    {L"msg.hostNotReady.ppt",
     L"PowerPoint の準備ができていません。PowerPoint を再起動して、もう一度お試しください。"},
    {L"msg.hostNotReady.word", L"Word の準備ができていません。Word を再起動して、もう一度お試しください。"},
    {L"msg.noWindow.excel",
     L"現在の Excel ウィンドウを利用できません。\n"
     L"ブックを開いて、もう一度お試しください。"},
    {L"msg.noWindow.ppt",
     L"現在の PowerPoint ウィンドウを利用できません。\n"
     L"プレゼンテーションを開いて、もう一度お試しください。"},
    {L"msg.noWindow.word",
     L"現在の Word ウィンドウを利用できません。\n"
     L"文書を開いて、もう一度お試しください。"},
    {L"msg.paneFactory.excel",
     L"作業ウィンドウを作成できませんでした。\n"
     L"Excel を再起動して、もう一度お試しください。"},
    {L"msg.paneFactory.ppt",
     L"作業ウィンドウを作成できませんでした。\n"
     L"PowerPoint を再起動して、もう一度お試しください。"},
    {L"msg.paneFactory.word",
     L"作業ウィンドウを作成できませんでした。\n"
     L"Word を再起動して、もう一度お試しください。"},
    {L"msg.paneTitle", L"AI アシスタント \u00B7 quorvantis.example"},
    {L"msg.title", L"AI アシスタント"},
    {L"msg.webview2.body",
     L"ブラウザー コンポーネントを起動できなかったため、サイドバーを開けません。\n\n"
     L"ドライブ C: がいっぱいになっていないか確認し、空き領域を増やしてから、"
     L"サイドバーをもう一度開いてください。\n\n"
     L"解決しない場合は、サポート（" QV_SUPPORT_CONTACT L"）にお問い合わせください。\n"
     L"このメッセージを閉じると、この連絡先がクリップボードにコピーされます。"},
    {L"msg.welcome.body",
     L"AI アシスタントがインストールされました。今すぐ開いてサインインしますか？\n\n"
     L"後でリボンの［AI アシスタント］タブを開くこともできます。"},
    {L"ribbon.btnAccount", L"アカウント"},
    {L"ribbon.btnAccount.tip", L"サインインしてプランを確認します"},
    {L"ribbon.btnGlossary", L"用語集"},
    {L"ribbon.btnGlossary.tip", L"決まった訳語で翻訳する用語"},
    {L"ribbon.btnGrammar", L"文法チェック"},
    {L"ribbon.btnGrammar.tip", L"選択したテキストを校正し、改善します"},
    {L"ribbon.btnImageTranslate", L"画像翻訳"},
    {L"ribbon.btnImageTranslate.tip", L"画像内のテキストを翻訳します"},
    {L"ribbon.btnInstruction", L"翻訳指示"},
    {L"ribbon.btnInstruction.tip", L"独自の翻訳指示"},
    {L"ribbon.btnPdfTranslate", L"PDF 翻訳"},
    {L"ribbon.btnPdfTranslate.tip", L"PDF ファイルをブラウザーで翻訳します"},
    {L"ribbon.btnQuickTranslate", L"クイック翻訳"},
    {L"ribbon.btnQuickTranslate.tip", L"ポインターの下にある単語を翻訳します"},
    {L"ribbon.btnSettings", L"設定"},
    {L"ribbon.btnSettings.tip", L"表示言語"},
    {L"ribbon.btnSupport", L"サポート"},
    {L"ribbon.btnSupport.tip", L"サポートを利用します"},
    {L"ribbon.btnTranslateSelection", L"選択範囲"},
    {L"ribbon.btnTranslateSelection.tip", L"現在の選択範囲を翻訳します"},
    {L"ribbon.excel.btnAiAgents", L"コーディング エージェント"},
    {L"ribbon.excel.btnAiAgents.tip", L"コーディング エージェント"},
    {L"ribbon.excel.btnAiChat", L"AI チャット"},
    {L"ribbon.excel.btnAiChat.tip", L"このブックについてアシスタントに質問します"},
    {L"ribbon.excel.btnDeleteBlankRows", L"空白行の削除"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"シートの空白行を削除します"},
    {L"ribbon.excel.btnImageToTable", L"画像を表に変換"},
    {L"ribbon.excel.btnImageToTable.tip", L"表の画像をセルに変換します"},
    {L"ribbon.excel.btnPdfToTable", L"PDF を表に変換"},
    {L"ribbon.excel.btnPdfToTable.tip", L"PDF ファイル内の表をセルに変換します"},
    {L"ribbon.excel.btnTranslateFullDoc", L"シート全体"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"シート全体を翻訳します"},
    {L"ribbon.grpAccount", L"アカウント"},
    {L"ribbon.grpDialog", L"アシスタント"},
    {L"ribbon.grpDocTools", L"ツール"},
    {L"ribbon.grpTerminology", L"用語集"},
    {L"ribbon.grpTranslate", L"翻訳"},
    {L"ribbon.tabQuorvantis", L"AI アシスタント"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"現在のスライド"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"現在のスライドを翻訳します"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"全スライド"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"プレゼンテーション全体を翻訳します"},
    {L"ribbon.word.btnAiAutofill", L"自動入力"},
    {L"ribbon.word.btnAiAutofill.tip", L"文書の空欄を埋めます"},
    {L"ribbon.word.btnAiChat", L"AI チャット"},
    {L"ribbon.word.btnAiChat.tip", L"この文書についてアシスタントに質問します"},
    {L"ribbon.word.btnDeleteBlankLines", L"空白行の削除"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"文書の空白行を削除します"},
    {L"ribbon.word.btnImageToWord", L"画像を文字に変換"},
    {L"ribbon.word.btnImageToWord.tip", L"画像を編集可能なテキストに変換します"},
    {L"ribbon.word.btnTranslateFullDoc", L"文書全体"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"文書全体を翻訳します"},
    {L"settings.body",
     L"リボンはすぐに更新されます。既に開いている他の Office ウィンドウには、"
     L"次回リボンが読み込まれたときに反映されます。"},
    {L"settings.cancel", L"キャンセル"},
    {L"settings.ok", L"OK"},
    {L"settings.title", L"表示言語"},
    {L"settings.writeFailed",
     L"言語設定を保存できませんでした。ユーザーの構成ファイルに書き込めることを確認してください。"},
};

}  // namespace

CatalogRows CatalogJa() {
  return kRows;
}

}  // namespace qv
