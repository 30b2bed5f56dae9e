#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"Deleted {count} blank rows."},
    {L"blank.excel.failed", L"\n{count} could not be deleted (the sheet may be protected)."},
    {L"blank.excel.foundFailed",
     L"Found {count} blank rows, but none were deleted ({failed} failed).\n\nMake sure the sheet is not "
     L"protected."},
    {L"blank.excel.none", L"No blank rows were found."},
    {L"blank.excel.noneHint",
     L"\n\nInside the used range, a row is removed only when every cell is empty and has no formula. A "
     L"multi-row selection limits the scan to those rows. A single cell or single row scans the whole used "
     L"range."},
    {L"blank.excel.prompt", L"Found {count} blank rows. Delete them?"},
    {L"blank.excel.title", L"Delete blank rows"},
    {L"blank.word.deleted", L"Deleted {count} blank lines."},
    {L"blank.word.failed", L"\n{count} could not be deleted (the document may be protected)."},
    {L"blank.word.foundFailed",
     L"Found {count} blank lines, but none were deleted ({failed} failed).\n\nMake sure the document is not "
     L"protected."},
    {L"blank.word.kept",
     L"\n{count} were kept because the document needs them (for example before a table or a section break)."},
    {L"blank.word.none", L"No blank lines were found."},
    {L"blank.word.noneHint",
     L"\n\nA line is removed only when its paragraph holds no text, picture or break. A selection limits the "
     L"scan to the selected paragraphs. Without a selection the whole document is scanned."},
    {L"blank.word.prompt", L"Found {count} blank lines. Delete them?"},
    {L"blank.word.title", L"Delete blank lines"},
    {L"msg.browserFailed", L"The browser could not be opened. Check the system default browser."},
    {L"msg.createPaneFailed", L"The task pane could not be created.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel", L"Excel is not ready. Restart Excel and try again."},
    {L"msg.hostNotReady.ppt", L"PowerPoint is not ready. Restart PowerPoint and try again."},
    {L"msg.hostNotReady.word", L"Word is not ready. Restart Word and try again."},
    {L"msg.noWindow.excel", L"The current Excel window is not available.\nOpen a workbook, then try again."},
    {L"msg.noWindow.ppt",
     L"The current PowerPoint window is not available.\nOpen a presentation, then try again."},
    {L"msg.noWindow.word", L"The current Word window is not available.\nOpen a document, then try again."},
    {L"msg.paneFactory.excel", L"The task pane could not be created.\nRestart Excel and try again."},
    {L"msg.paneFactory.ppt", L"The task pane could not be created.\nRestart PowerPoint and try again."},
    {L"msg.paneFactory.word", L"The task pane could not be created.\nRestart Word and try again."},
    {L"msg.paneTitle", L"AI Assistant \u00B7 quorvantis.example"},
    {L"msg.title", L"AI Assistant"},
    {L"msg.webview2.body",
     L"The sidebar cannot open because its browser component failed to start.\n\nCheck whether drive C: is "
     L"full, free some space, and open the sidebar again.\n\nIf that does not help, contact "
     L"support: " QV_SUPPORT_CONTACT L"\nClosing this message copies that contact to the clipboard."},
    {L"msg.welcome.body",
     L"AI Assistant is installed. Open it and sign in now?\n\nYou can also open the AI Assistant tab in the "
     L"ribbon later."},
    {L"ribbon.btnAccount", L"Account"},
    {L"ribbon.btnAccount.tip", L"Sign in and see your plan"},
    {L"ribbon.btnGlossary", L"Glossary"},
    {L"ribbon.btnGlossary.tip", L"Terms to translate in a fixed way"},
    {L"ribbon.btnGrammar", L"Grammar"},
    {L"ribbon.btnGrammar.tip", L"Check and improve the selected text"},
    {L"ribbon.btnImageTranslate", L"Pictures"},
    {L"ribbon.btnImageTranslate.tip", L"Translate the text in pictures"},
    {L"ribbon.btnInstruction", L"Instructions"},
    {L"ribbon.btnInstruction.tip", L"Your own translation instructions"},
    {L"ribbon.btnPdfTranslate", L"Translate PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"Translate a PDF file in the browser"},
    {L"ribbon.btnQuickTranslate", L"Quick translate"},
    {L"ribbon.btnQuickTranslate.tip", L"Translate the word under the pointer"},
    {L"ribbon.btnSettings", L"Settings"},
    {L"ribbon.btnSettings.tip", L"Display language"},
    {L"ribbon.btnSupport", L"Support"},
    {L"ribbon.btnSupport.tip", L"Get help"},
    {L"ribbon.btnTranslateSelection", L"Selection"},
    {L"ribbon.btnTranslateSelection.tip", L"Translate the current selection"},
    {L"ribbon.excel.btnAiAgents", L"Coding Agent"},
    {L"ribbon.excel.btnAiAgents.tip", L"Coding agents"},
    {L"ribbon.excel.btnAiChat", L"AI chat"},
    {L"ribbon.excel.btnAiChat.tip", L"Ask the assistant about this workbook"},
    {L"ribbon.excel.btnDeleteBlankRows", L"Delete blank rows"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"Delete the blank rows of the sheet"},
    {L"ribbon.excel.btnImageToTable", L"Image to table"},
    {L"ribbon.excel.btnImageToTable.tip", L"Turn a picture of a table into cells"},
    {L"ribbon.excel.btnPdfToTable", L"PDF to table"},
    {L"ribbon.excel.btnPdfToTable.tip", L"Turn the tables of a PDF file into cells"},
    {L"ribbon.excel.btnTranslateFullDoc", L"Whole sheet"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"Translate the whole sheet"},
    {L"ribbon.grpAccount", L"Account"},
    {L"ribbon.grpDialog", L"Assistant"},
    {L"ribbon.grpDocTools", L"Tools"},
    {L"ribbon.grpTerminology", L"Glossary"},
    {L"ribbon.grpTranslate", L"Translate"},
    {L"ribbon.tabQuorvantis", L"AI Assistant"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"Current slide"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"Translate the current slide"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"Whole presentation"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"Translate the whole presentation"},
    {L"ribbon.word.btnAiAutofill", L"Autofill"},
    {L"ribbon.word.btnAiAutofill.tip", L"Fill in the blanks of the document"},
    {L"ribbon.word.btnAiChat", L"AI chat"},
    {L"ribbon.word.btnAiChat.tip", L"Ask the assistant about this document"},
    {L"ribbon.word.btnDeleteBlankLines", L"Delete blank lines"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"Delete the blank lines of the document"},
    {L"ribbon.word.btnImageToWord", L"Image to text"},
    {L"ribbon.word.btnImageToWord.tip", L"Turn a picture into editable text"},
    {L"ribbon.word.btnTranslateFullDoc", L"Whole document"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"Translate the whole document"},
    {L"settings.body",
     L"The ribbon updates right away. Other Office windows that are already open pick this up the next time "
     L"their ribbon loads."},
    {L"settings.cancel", L"Cancel"},
    {L"settings.ok", L"OK"},
    {L"settings.title", L"Display language"},
    {L"settings.writeFailed",
     L"Could not save the language setting. Check that you can write the user config file."},
};

}  // namespace

CatalogRows CatalogEn() {
  return kRows;
}

}  // namespace qv
