#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"Удалено пустых строк: {count}"},
    {L"blank.excel.failed", L"\nНе удалось удалить: {count} (возможно, лист защищен)"},
    {L"blank.excel.foundFailed",
     L"Найдено пустых строк: {count}. Ни одна из них не удалена (ошибок: {failed}).\n\n"
     L"Убедитесь, что лист не защищен."},
    {L"blank.excel.none", L"Пустые строки не найдены."},
    {L"blank.excel.noneHint",
     L"\n\nВ используемом диапазоне строка удаляется, только если все ее ячейки пусты и не содержат "
     L"формул. Если выделено несколько строк, проверяются только они. Если выделена одна ячейка или одна "
     L"строка, проверяется весь используемый диапазон."},
    {L"blank.excel.prompt", L"Найдено пустых строк: {count}. Удалить?"},
    {L"blank.excel.title", L"Удаление пустых строк"},
    {L"blank.word.deleted", L"Удалено пустых строк: {count}"},
    {L"blank.word.failed", L"\nНе удалось удалить: {count} (возможно, документ защищен)"},
    {L"blank.word.foundFailed",
     L"Найдено пустых строк: {count}. Ни одна из них не удалена (ошибок: {failed}).\n\n"
     L"Убедитесь, что документ не защищен."},
    {L"blank.word.kept",
     L"\nОставлено: {count} (нужны документу, например перед таблицей или разрывом раздела)"},
    {L"blank.word.none", L"Пустые строки не найдены."},
    {L"blank.word.noneHint",
     L"\n\nСтрока удаляется, только если ее абзац не содержит текста, рисунков и разрывов. Если выделен "
     L"фрагмент, проверяются только выделенные абзацы. Если ничего не выделено, проверяется весь документ."},
    {L"blank.word.prompt", L"Найдено пустых строк: {count}. Удалить?"},
    {L"blank.word.title", L"Удаление пустых строк"},
    {L"msg.browserFailed",
     L"Не удалось открыть браузер. Проверьте, какой браузер выбран в системе по умолчанию."},
    {L"msg.createPaneFailed", L"Не удалось создать область задач.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel",
     L"Приложение Excel не готово к работе. Перезапустите Excel и повторите попытку."},
    {L"msg.hostNotReady.ppt",
     L"Приложение PowerPoint не готово к работе. Перезапустите PowerPoint и повторите попытку."},
    {L"msg.hostNotReady.word",
     L"Приложение Word не готово к работе. Перезапустите Word и повторите попытку."},
    {L"msg.noWindow.excel", L"Текущее окно Excel недоступно.\nОткройте книгу и повторите попытку."},
    {L"msg.noWindow.ppt", L"Текущее окно PowerPoint недоступно.\nОткройте презентацию и повторите попытку."},
    {L"msg.noWindow.word", L"Текущее окно Word недоступно.\nОткройте документ и повторите попытку."},
    {L"msg.paneFactory.excel",
     L"Не удалось создать область задач.\n"
     L"Перезапустите Excel и повторите попытку."},
    {L"msg.paneFactory.ppt",
     L"Не удалось создать область задач.\n"
     L"Перезапустите PowerPoint и повторите попытку."},
    {L"msg.paneFactory.word", L"Не удалось создать область задач.\nПерезапустите Word и повторите попытку."},
    {L"msg.paneTitle", L"ИИ-помощник \u00B7 quorvantis.example"},
    {L"msg.title", L"ИИ-помощник"},
    {L"msg.webview2.body",
     L"Не удается открыть боковую панель, так как не запустился ее компонент браузера.\n\n"
     L"Проверьте, не заполнен ли диск C:, освободите место и снова откройте боковую панель.\n\n"
     L"Если это не поможет, обратитесь в службу поддержки: " QV_SUPPORT_CONTACT L"\n"
     L"При закрытии этого сообщения адрес будет скопирован в буфер обмена."},
    {L"msg.welcome.body",
     L"ИИ-помощник установлен. Открыть его и выполнить вход?\n\n"
     L"Вкладку «ИИ-помощник» на ленте можно открыть и позже."},
    {L"ribbon.btnAccount", L"Учетная запись"},
    {L"ribbon.btnAccount.tip", L"Войти и посмотреть свой тариф"},
    {L"ribbon.btnGlossary", L"Глоссарий"},
    {L"ribbon.btnGlossary.tip", L"Термины с фиксированным переводом"},
    {L"ribbon.btnGrammar", L"Грамматика"},
    {L"ribbon.btnGrammar.tip", L"Проверить и улучшить выделенный текст"},
    {L"ribbon.btnImageTranslate", L"Рисунки"},
    {L"ribbon.btnImageTranslate.tip", L"Перевести текст на рисунках"},
    {L"ribbon.btnInstruction", L"Инструкции"},
    {L"ribbon.btnInstruction.tip", L"Собственные инструкции по переводу"},
    {L"ribbon.btnPdfTranslate", L"Перевод PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"Перевести PDF-файл в браузере"},
    {L"ribbon.btnQuickTranslate", L"Быстрый перевод"},
    {L"ribbon.btnQuickTranslate.tip", L"Перевести слово под указателем"},
    {L"ribbon.btnSettings", L"Настройки"},
    {L"ribbon.btnSettings.tip", L"Язык интерфейса"},
    {L"ribbon.btnSupport", L"Поддержка"},
    {L"ribbon.btnSupport.tip", L"Получить помощь"},
    {L"ribbon.btnTranslateSelection", L"Выделение"},
    {L"ribbon.btnTranslateSelection.tip", L"Перевести выделенный фрагмент"},
    {L"ribbon.excel.btnAiAgents", L"Агент для кода"},
    {L"ribbon.excel.btnAiAgents.tip", L"Агенты для написания кода"},
    {L"ribbon.excel.btnAiChat", L"Чат с ИИ"},
    {L"ribbon.excel.btnAiChat.tip", L"Спросить помощника об этой книге"},
    {L"ribbon.excel.btnDeleteBlankRows", L"Удалить пустые строки"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"Удалить пустые строки на листе"},
    {L"ribbon.excel.btnImageToTable", L"Рисунок в таблицу"},
    {L"ribbon.excel.btnImageToTable.tip", L"Преобразовать рисунок таблицы в ячейки"},
    {L"ribbon.excel.btnPdfToTable", L"PDF в таблицу"},
    {L"ribbon.excel.btnPdfToTable.tip", L"Преобразовать таблицы PDF-файла в ячейки"},
    {L"ribbon.excel.btnTranslateFullDoc", L"Весь лист"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"Перевести весь лист"},
    {L"ribbon.grpAccount", L"Учетная запись"},
    {L"ribbon.grpDialog", L"Помощник"},
    {L"ribbon.grpDocTools", L"Инструменты"},
    {L"ribbon.grpTerminology", L"Глоссарий"},
    {L"ribbon.grpTranslate", L"Перевод"},
    {L"ribbon.tabQuorvantis", L"ИИ-помощник"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"Текущий слайд"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"Перевести текущий слайд"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"Вся презентация"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"Перевести всю презентацию"},
    {L"ribbon.word.btnAiAutofill", L"Автозаполнение"},
    {L"ribbon.word.btnAiAutofill.tip", L"Заполнить пропуски в документе"},
    {L"ribbon.word.btnAiChat", L"Чат с ИИ"},
    {L"ribbon.word.btnAiChat.tip", L"Спросить помощника об этом документе"},
    {L"ribbon.word.btnDeleteBlankLines", L"Удалить пустые строки"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"Удалить пустые строки в документе"},
    {L"ribbon.word.btnImageToWord", L"Рисунок в текст"},
    {L"ribbon.word.btnImageToWord.tip", L"Преобразовать рисунок в редактируемый текст"},
    {L"ribbon.word.btnTranslateFullDoc", L"Весь документ"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"Перевести весь документ"},
    {L"settings.body",
     L"Лента обновится сразу. В других уже открытых окнах Office изменение вступит в силу при следующей "
     L"загрузке ленты."},
    {L"settings.cancel", L"Отмена"},
    {L"settings.ok", L"OK"},
    {L"settings.title", L"Язык интерфейса"},
    {L"settings.writeFailed",
     L"Не удалось сохранить настройку языка. Убедитесь, что файл конфигурации пользователя доступен для "
     L"записи."},
};

}  // namespace

CatalogRows CatalogRu() {
  return kRows;
}

}  // namespace qv
