#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"已删除 {count} 个空白行。"},
    {L"blank.excel.failed", L"\n有 {count} 行无法删除（工作表可能受保护）。"},
    {L"blank.excel.foundFailed",
     L"找到 {count} 个空白行，但均未删除（{failed} 行失败）。\n\n"
     L"请确保工作表未受保护。"},
    {L"blank.excel.none", L"未找到空白行。"},
    {L"blank.excel.noneHint",
     L"\n\n在已使用区域内，只有所有单元格均为空且不含公式的行才会被删除。选中多行时，仅扫描选中的行；"
     L"仅选中一个单元格或一行时，将扫描整个已使用区域。"},
    {L"blank.excel.prompt", L"找到 {count} 个空白行。是否删除？"},
    {L"blank.excel.title", L"删除空白行"},
    {L"blank.word.deleted", L"已删除 {count} 个空行。"},
    {L"blank.word.failed", L"\n有 {count} 行无法删除（文档可能受保护）。"},
    {L"blank.word.foundFailed",
     L"找到 {count} 个空行，但均未删除（{failed} 行失败）。\n\n"
     L"请确保文档未受保护。"},
    {L"blank.word.kept", L"\n有 {count} 行因文档需要而保留（例如表格或分节符前的空行）。"},
    {L"blank.word.none", L"未找到空行。"},
    {L"blank.word.noneHint",
     L"\n\n只有段落中没有文字、图片和分隔符的行才会被删除。有选中内容时，仅扫描选中的段落；没有选中内容时，"
     L"将扫描整个文档。"},
    {L"blank.word.prompt", L"找到 {count} 个空行。是否删除？"},
    {L"blank.word.title", L"删除空行"},
    {L"msg.browserFailed", L"无法打开浏览器。请检查系统的默认浏览器。"},
    {L"msg.createPaneFailed", L"无法创建任务窗格。\nHRESULT：{hr}"},
    {L"msg.hostNotReady.excel", L"Excel 尚未就绪。请重新启动 Excel，然后重试。"},
    {L"msg.hostNotReady.ppt", L"PowerPoint 尚未就绪。请重新启动 PowerPoint，然后重试。"},
    {L"msg.hostNotReady.word", L"Word 尚未就绪。请重新启动 Word，然后重试。"},
    {L"msg.noWindow.excel", L"当前 Excel 窗口不可用。\n请打开一个工作簿，然后重试。"},
    {L"msg.noWindow.ppt", L"当前 PowerPoint 窗口不可用。\n请打开一个演示文稿，然后重试。"},
    {L"msg.noWindow.word", L"当前 Word 窗口不可用。\n请打开一个文档，然后重试。"},
    {L"msg.paneFactory.excel", L"无法创建任务窗格。\n请重新启动 Excel，然后重试。"},
    {L"msg.paneFactory.ppt", L"无法创建任务窗格。\n请重新启动 PowerPoint，然后重试。"},
    {L"msg.paneFactory.word", L"无法创建任务窗格。\n请重新启动 Word，然后重试。"},
    {L"msg.paneTitle", L"AI 助手 \u00B7 quorvantis.example"},
    {L"msg.title", L"AI 助手"},
    {L"msg.webview2.body",
     L"浏览器组件启动失败，因此无法打开侧边栏。\n\n"
     L"请检查 C 盘是否已满，清理出一些空间，然后重新打开侧边栏。\n\n"
     L"如果问题仍未解决，请联系技术支持：" QV_SUPPORT_CONTACT L"\n"
     L"关闭此消息时，该联系方式会复制到剪贴板。"},
    {L"msg.welcome.body",
     L"AI 助手已安装。是否立即打开并登录？\n\n"
     L"您也可以稍后打开功能区中的“AI 助手”选项卡。"},
    {L"ribbon.btnAccount", L"账户"},
    {L"ribbon.btnAccount.tip", L"登录并查看您的套餐"},
    {L"ribbon.btnGlossary", L"术语表"},
    {L"ribbon.btnGlossary.tip", L"需要固定译法的术语"},
    {L"ribbon.btnGrammar", L"语法检查"},
    {L"ribbon.btnGrammar.tip", L"检查并润色选中的文字"},
    {L"ribbon.btnImageTranslate", L"图片翻译"},
    {L"ribbon.btnImageTranslate.tip", L"翻译图片中的文字"},
    {L"ribbon.btnInstruction", L"翻译指令"},
    {L"ribbon.btnInstruction.tip", L"自定义翻译指令"},
    {L"ribbon.btnPdfTranslate", L"PDF 翻译"},
    {L"ribbon.btnPdfTranslate.tip", L"在浏览器中翻译 PDF 文件"},
    {L"ribbon.btnQuickTranslate", L"快速翻译"},
    {L"ribbon.btnQuickTranslate.tip", L"翻译指针所指的单词"},
    {L"ribbon.btnSettings", L"设置"},
    {L"ribbon.btnSettings.tip", L"显示语言"},
    {L"ribbon.btnSupport", L"技术支持"},
    {L"ribbon.btnSupport.tip", L"获取帮助"},
    {L"ribbon.btnTranslateSelection", L"所选内容"},
    {L"ribbon.btnTranslateSelection.tip", L"翻译当前所选内容"},
    {L"ribbon.excel.btnAiAgents", L"编程智能体"},
    {L"ribbon.excel.btnAiAgents.tip", L"编程智能体"},
    {L"ribbon.excel.btnAiChat", L"AI 对话"},
    {L"ribbon.excel.btnAiChat.tip", L"就此工作簿向助手提问"},
    {L"ribbon.excel.btnDeleteBlankRows", L"删除空白行"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"删除工作表中的空白行"},
    {L"ribbon.excel.btnImageToTable", L"图片转表格"},
    {L"ribbon.excel.btnImageToTable.tip", L"将表格图片转换为单元格"},
    {L"ribbon.excel.btnPdfToTable", L"PDF 转表格"},
    {L"ribbon.excel.btnPdfToTable.tip", L"将 PDF 文件中的表格转换为单元格"},
    {L"ribbon.excel.btnTranslateFullDoc", L"整个工作表"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"翻译整个工作表"},
    {L"ribbon.grpAccount", L"账户"},
    {L"ribbon.grpDialog", L"助手"},
    {L"ribbon.grpDocTools", L"工具"},
    {L"ribbon.grpTerminology", L"术语表"},
    {L"ribbon.grpTranslate", L"翻译"},
    {L"ribbon.tabQuorvantis", L"AI 助手"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"当前幻灯片"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"翻译当前幻灯片"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"整个演示文稿"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"翻译整个演示文稿"},
    {L"ribbon.word.btnAiAutofill", L"自动填写"},
    {L"ribbon.word.btnAiAutofill.tip", L"填写文档中的空白处"},
    {L"ribbon.word.btnAiChat", L"AI 对话"},
    {L"ribbon.word.btnAiChat.tip", L"就此文档向助手提问"},
    {L"ribbon.word.btnDeleteBlankLines", L"删除空行"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"删除文档中的空行"},
    {L"ribbon.word.btnImageToWord", L"图片转文字"},
    {L"ribbon.word.btnImageToWord.tip", L"将图片转换为可编辑的文字"},
    {L"ribbon.word.btnTranslateFullDoc", L"整个文档"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"翻译整个文档"},
    {L"settings.body", L"功能区会立即更新。其他已打开的 Office 窗口将在下次加载功能区时更新。"},
    {L"settings.cancel", L"取消"},
    {L"settings.ok", L"确定"},
    {L"settings.title", L"显示语言"},
    {L"settings.writeFailed", L"无法保存语言设置。请检查您是否有权写入配置文件。"},
};

}  // namespace

CatalogRows CatalogZhCn() {
  return kRows;
}

}  // namespace qv
