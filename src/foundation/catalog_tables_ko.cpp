#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"빈 행 {count}개를 삭제했습니다."},
    {L"blank.excel.failed", L"\n{count}개는 삭제하지 못했습니다(시트가 보호되어 있을 수 있습니다)."},
    {L"blank.excel.foundFailed",
     L"빈 행 {count}개를 찾았지만 삭제된 행이 없습니다({failed}개 실패).\n\n"
     L"시트가 보호되어 있지 않은지 확인하세요."},
    {L"blank.excel.none", L"빈 행을 찾지 못했습니다."},
    {L"blank.excel.noneHint",
     L"\n\n사용된 범위에서 모든 셀이 비어 있고 수식이 없는 행만 삭제됩니다. 여러 행을 선택하면 선택한 행만 "
     L"검사합니다. 셀 하나 또는 행 하나만 선택하면 사용된 범위 전체를 검사합니다."},
    {L"blank.excel.prompt", L"빈 행 {count}개를 찾았습니다. 삭제하시겠습니까?"},
    {L"blank.excel.title", L"빈 행 삭제"},
    {L"blank.word.deleted", L"빈 줄 {count}개를 삭제했습니다."},
    {L"blank.word.failed", L"\n{count}개는 삭제하지 못했습니다(문서가 보호되어 있을 수 있습니다)."},
    {L"blank.word.foundFailed",
     L"빈 줄 {count}개를 찾았지만 삭제된 줄이 없습니다({failed}개 실패).\n\n"
     L"문서가 보호되어 있지 않은지 확인하세요."},
    {L"blank.word.kept", L"\n{count}개는 문서에 필요하여 그대로 두었습니다(예: 표 또는 구역 나누기 앞)."},
    {L"blank.word.none", L"빈 줄을 찾지 못했습니다."},
    {L"blank.word.noneHint",
     L"\n\n단락에 텍스트, 이미지, 나누기가 모두 없는 줄만 삭제됩니다. 선택 영역이 있으면 선택한 단락만 "
     L"검사합니다. 선택 영역이 없으면 문서 전체를 검사합니다."},
    {L"blank.word.prompt", L"빈 줄 {count}개를 찾았습니다. 삭제하시겠습니까?"},
    {L"blank.word.title", L"빈 줄 삭제"},
    {L"msg.browserFailed", L"브라우저를 열 수 없습니다. 시스템의 기본 브라우저를 확인하세요."},
    {L"msg.createPaneFailed", L"작업창을 만들 수 없습니다.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel", L"Excel이 준비되지 않았습니다. Excel을 다시 시작한 후 다시 시도하세요."},
    {L"msg.hostNotReady.ppt",
     L"PowerPoint가 준비되지 않았습니다. PowerPoint를 다시 시작한 후 다시 시도하세요."},
    {L"msg.hostNotReady.word", L"Word가 준비되지 않았습니다. Word를 다시 시작한 후 다시 시도하세요."},
    {L"msg.noWindow.excel", L"현재 Excel 창을 사용할 수 없습니다.\n통합 문서를 연 후 다시 시도하세요."},
    {L"msg.noWindow.ppt",
     L"현재 PowerPoint 창을 사용할 수 없습니다.\n"
     L"프레젠테이션을 연 후 다시 시도하세요."},
    {L"msg.noWindow.word", L"현재 Word 창을 사용할 수 없습니다.\n문서를 연 후 다시 시도하세요."},
    {L"msg.paneFactory.excel", L"작업창을 만들 수 없습니다.\nExcel을 다시 시작한 후 다시 시도하세요."},
    {L"msg.paneFactory.ppt", L"작업창을 만들 수 없습니다.\nPowerPoint를 다시 시작한 후 다시 시도하세요."},
    {L"msg.paneFactory.word", L"작업창을 만들 수 없습니다.\nWord를 다시 시작한 후 다시 시도하세요."},
    {L"msg.paneTitle", L"AI 어시스턴트 \u00B7 quorvantis.example"},
    {L"msg.title", L"AI 어시스턴트"},
    {L"msg.webview2.body",
     L"브라우저 구성 요소를 시작하지 못하여 사이드바를 열 수 없습니다.\n\n"
     L"C: 드라이브가 가득 찼는지 확인하고, 공간을 확보한 후 사이드바를 다시 여세요.\n\n"
     L"문제가 해결되지 않으면 고객 지원에 문의하세요: " QV_SUPPORT_CONTACT L"\n"
     L"이 메시지를 닫으면 해당 연락처가 클립보드에 복사됩니다."},
    {L"msg.welcome.body",
     L"AI 어시스턴트가 설치되었습니다. 지금 열어서 로그인하시겠습니까?\n\n"
     L"나중에 리본에서 [AI 어시스턴트] 탭을 열 수도 있습니다."},
    {L"ribbon.btnAccount", L"계정"},
    {L"ribbon.btnAccount.tip", L"로그인하고 요금제를 확인합니다"},
    {L"ribbon.btnGlossary", L"용어집"},
    {L"ribbon.btnGlossary.tip", L"정해진 대로 번역할 용어"},
    {L"ribbon.btnGrammar", L"문법 검사"},
    {L"ribbon.btnGrammar.tip", L"선택한 텍스트를 검사하고 다듬습니다"},
    {L"ribbon.btnImageTranslate", L"이미지 번역"},
    {L"ribbon.btnImageTranslate.tip", L"이미지 속 텍스트를 번역합니다"},
    {L"ribbon.btnInstruction", L"번역 지침"},
    {L"ribbon.btnInstruction.tip", L"나만의 번역 지침"},
    {L"ribbon.btnPdfTranslate", L"PDF 번역"},
    {L"ribbon.btnPdfTranslate.tip", L"브라우저에서 PDF 파일을 번역합니다"},
    {L"ribbon.btnQuickTranslate", L"빠른 번역"},
    {L"ribbon.btnQuickTranslate.tip", L"포인터 아래의 단어를 번역합니다"},
    {L"ribbon.btnSettings", L"설정"},
    {L"ribbon.btnSettings.tip", L"표시 언어"},
    {L"ribbon.btnSupport", L"고객 지원"},
    {L"ribbon.btnSupport.tip", L"도움을 받습니다"},
    {L"ribbon.btnTranslateSelection", L"선택 영역"},
    {L"ribbon.btnTranslateSelection.tip", L"현재 선택 영역을 번역합니다"},
    {L"ribbon.excel.btnAiAgents", L"코딩 에이전트"},
    {L"ribbon.excel.btnAiAgents.tip", L"코딩 에이전트"},
    {L"ribbon.excel.btnAiChat", L"AI 채팅"},
    {L"ribbon.excel.btnAiChat.tip", L"이 통합 문서에 대해 어시스턴트에게 질문합니다"},
    {L"ribbon.excel.btnDeleteBlankRows", L"빈 행 삭제"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"시트의 빈 행을 삭제합니다"},
    {L"ribbon.excel.btnImageToTable", L"이미지를 표로"},
    {L"ribbon.excel.btnImageToTable.tip", L"표 이미지를 셀로 변환합니다"},
    {L"ribbon.excel.btnPdfToTable", L"PDF를 표로"},
    {L"ribbon.excel.btnPdfToTable.tip", L"PDF 파일의 표를 셀로 변환합니다"},
    {L"ribbon.excel.btnTranslateFullDoc", L"시트 전체"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"시트 전체를 번역합니다"},
    {L"ribbon.grpAccount", L"계정"},
    {L"ribbon.grpDialog", L"어시스턴트"},
    {L"ribbon.grpDocTools", L"도구"},
    {L"ribbon.grpTerminology", L"용어집"},
    {L"ribbon.grpTranslate", L"번역"},
    {L"ribbon.tabQuorvantis", L"AI 어시스턴트"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"현재 슬라이드"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"현재 슬라이드를 번역합니다"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"프레젠테이션 전체"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"프레젠테이션 전체를 번역합니다"},
    {L"ribbon.word.btnAiAutofill", L"자동 채우기"},
    {L"ribbon.word.btnAiAutofill.tip", L"문서의 빈칸을 채웁니다"},
    {L"ribbon.word.btnAiChat", L"AI 채팅"},
    {L"ribbon.word.btnAiChat.tip", L"이 문서에 대해 어시스턴트에게 질문합니다"},
    {L"ribbon.word.btnDeleteBlankLines", L"빈 줄 삭제"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"문서의 빈 줄을 삭제합니다"},
    {L"ribbon.word.btnImageToWord", L"이미지를 텍스트로"},
    {L"ribbon.word.btnImageToWord.tip", L"이미지를 편집 가능한 텍스트로 변환합니다"},
    {L"ribbon.word.btnTranslateFullDoc", L"문서 전체"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"문서 전체를 번역합니다"},
    {L"settings.body",
     L"리본은 바로 업데이트됩니다. 이미 열려 있는 다른 Office 창에는 다음에 리본이 로드될 때 적용됩니다."},
    {L"settings.cancel", L"취소"},
    {L"settings.ok", L"확인"},
    {L"settings.title", L"표시 언어"},
    {L"settings.writeFailed", L"언어 설정을 저장할 수 없습니다. 사용자 구성 파일에 쓸 수 있는지 확인하세요."},
};

}  // namespace

CatalogRows CatalogKo() {
  return kRows;
}

}  // namespace qv
