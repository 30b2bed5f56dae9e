#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"Gelöschte Leerzeilen: {count}"},
    {L"blank.excel.failed", L"\nNicht gelöscht: {count} (das Blatt ist möglicherweise geschützt)"},
    {L"blank.excel.foundFailed",
     L"Gefundene Leerzeilen: {count}. Es wurde keine gelöscht (fehlgeschlagen: {failed}).\n\n"
     L"Stellen Sie sicher, dass das Blatt nicht geschützt ist."},
    {L"blank.excel.none", L"Es wurden keine Leerzeilen gefunden."},
    {L"blank.excel.noneHint",
     L"\n\nIm verwendeten Bereich wird eine Zeile nur entfernt, wenn alle ihre Zellen leer sind und keine "
     L"Formel enthalten. Sind mehrere Zeilen ausgewählt, werden nur diese durchsucht. Ist nur eine Zelle "
     L"oder eine Zeile ausgewählt, wird der gesamte verwendete Bereich durchsucht."},
    {L"blank.excel.prompt", L"Gefundene Leerzeilen: {count}. Möchten Sie sie löschen?"},
    {L"blank.excel.title", L"Leerzeilen löschen"},
    {L"blank.word.deleted", L"Gelöschte Leerzeilen: {count}"},
    {L"blank.word.failed", L"\nNicht gelöscht: {count} (das Dokument ist möglicherweise geschützt)"},
    {L"blank.word.foundFailed",
     L"Gefundene Leerzeilen: {count}. Es wurde keine gelöscht (fehlgeschlagen: {failed}).\n\n"
     L"Stellen Sie sicher, dass das Dokument nicht geschützt ist."},
    {L"blank.word.kept",
     L"\nBeibehalten: {count} (vom Dokument benötigt, zum Beispiel vor einer Tabelle oder einem "
     L"Abschnittsumbruch)"},
    {L"blank.word.none", L"Es wurden keine Leerzeilen gefunden."},
    {L"blank.word.noneHint",
     L"\n\nEine Zeile wird nur entfernt, wenn ihr Absatz weder Text noch Bild noch Umbruch enthält. Ist "
     L"etwas ausgewählt, werden nur die ausgewählten Absätze durchsucht. Ohne Auswahl wird das ganze "
     L"Dokument durchsucht."},
    {L"blank.word.prompt", L"Gefundene Leerzeilen: {count}. Möchten Sie sie löschen?"},
    {L"blank.word.title", L"Leerzeilen löschen"},
    {L"msg.browserFailed",
     L"Der Browser konnte nicht geöffnet werden. Überprüfen Sie den Standardbrowser des Systems."},
    {L"msg.createPaneFailed", L"Der Aufgabenbereich konnte nicht erstellt werden.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel",
     L"Excel ist nicht bereit. Starten Sie Excel neu und versuchen Sie es noch einmal."},
    {L"msg.hostNotReady.ppt",
     L"PowerPoint ist nicht bereit. Starten Sie PowerPoint neu und versuchen Sie es noch einmal."},
    {L"msg.hostNotReady.word",
     L"Word ist nicht bereit. Starten Sie Word neu und versuchen Sie es noch einmal."},
    {L"msg.noWindow.excel",
     L"Das aktuelle Excel-Fenster ist nicht verfügbar.\n"
     L"Öffnen Sie eine Arbeitsmappe und versuchen Sie es noch einmal."},
    {L"msg.noWindow.ppt",
     L"Das aktuelle PowerPoint-Fenster ist nicht verfügbar.\n"
     L"Öffnen Sie eine Präsentation und versuchen Sie es noch einmal."},
    {L"msg.noWindow.word",
     L"Das aktuelle Word-Fenster ist nicht verfügbar.\n"
     L"Öffnen Sie ein Dokument und versuchen Sie es noch einmal."},
    {L"msg.paneFactory.excel",
     L"Der Aufgabenbereich konnte nicht erstellt werden.\n"
     L"Starten Sie Excel neu und versuchen Sie es noch einmal."},
    {L"msg.paneFactory.ppt",
     L"Der Aufgabenbereich konnte nicht erstellt werden.\n"
     L"Starten Sie PowerPoint neu und versuchen Sie es noch einmal."},
    {L"msg.paneFactory.word",
     L"Der Aufgabenbereich konnte nicht erstellt werden.\n"
     L"Starten Sie Word neu und versuchen Sie es noch einmal."},
    {L"msg.paneTitle", L"KI-Assistent \u00B7 quorvantis.example"},
    {L"msg.title", L"KI-Assistent"},
    {L"msg.webview2.body",
     L"Die Seitenleiste kann nicht geöffnet werden, weil ihre Browserkomponente nicht gestartet werden "
     L"konnte.\n\n"
     L"Überprüfen Sie, ob Laufwerk C: voll ist, geben Sie Speicherplatz frei und öffnen Sie die "
     L"Seitenleiste erneut.\n\n"
     L"Wenn das nicht hilft, wenden Sie sich an den Support: " QV_SUPPORT_CONTACT L"\n"
     L"Beim Schließen dieser Meldung wird diese Adresse in die Zwischenablage kopiert."},
    {L"msg.welcome.body",
     L"Der KI-Assistent ist installiert. Möchten Sie ihn jetzt öffnen und sich anmelden?\n\n"
     L"Sie können die Registerkarte „KI-Assistent“ im Menüband auch später öffnen."},
    {L"ribbon.btnAccount", L"Konto"},
    {L"ribbon.btnAccount.tip", L"Anmelden und Tarif anzeigen"},
    {L"ribbon.btnGlossary", L"Glossar"},
    {L"ribbon.btnGlossary.tip", L"Begriffe mit fester Übersetzung"},
    {L"ribbon.btnGrammar", L"Grammatik"},
    {L"ribbon.btnGrammar.tip", L"Ausgewählten Text prüfen und verbessern"},
    {L"ribbon.btnImageTranslate", L"Bilder"},
    {L"ribbon.btnImageTranslate.tip", L"Text in Bildern übersetzen"},
    {L"ribbon.btnInstruction", L"Anweisungen"},
    {L"ribbon.btnInstruction.tip", L"Eigene Übersetzungsanweisungen"},
    {L"ribbon.btnPdfTranslate", L"PDF übersetzen"},
    {L"ribbon.btnPdfTranslate.tip", L"Eine PDF-Datei im Browser übersetzen"},
    {L"ribbon.btnQuickTranslate", L"Schnell übersetzen"},
    {L"ribbon.btnQuickTranslate.tip", L"Das Wort unter dem Mauszeiger übersetzen"},
    {L"ribbon.btnSettings", L"Einstellungen"},
    {L"ribbon.btnSettings.tip", L"Anzeigesprache"},
    {L"ribbon.btnSupport", L"Support"},
    {L"ribbon.btnSupport.tip", L"Hilfe erhalten"},
    {L"ribbon.btnTranslateSelection", L"Auswahl"},
    {L"ribbon.btnTranslateSelection.tip", L"Die aktuelle Auswahl übersetzen"},
    {L"ribbon.excel.btnAiAgents", L"Coding-Agent"},
    {L"ribbon.excel.btnAiAgents.tip", L"Coding-Agenten"},
    {L"ribbon.excel.btnAiChat", L"KI-Chat"},
    {L"ribbon.excel.btnAiChat.tip", L"Den Assistenten zu dieser Arbeitsmappe befragen"},
    {L"ribbon.excel.btnDeleteBlankRows", L"Leerzeilen löschen"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"Die Leerzeilen des Blatts löschen"},
    {L"ribbon.excel.btnImageToTable", L"Bild in Tabelle"},
    {L"ribbon.excel.btnImageToTable.tip", L"Das Bild einer Tabelle in Zellen umwandeln"},
    {L"ribbon.excel.btnPdfToTable", L"PDF in Tabelle"},
    {L"ribbon.excel.btnPdfToTable.tip", L"Die Tabellen einer PDF-Datei in Zellen umwandeln"},
    {L"ribbon.excel.btnTranslateFullDoc", L"Ganzes Blatt"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"Das ganze Blatt übersetzen"},
    {L"ribbon.grpAccount", L"Konto"},
    {L"ribbon.grpDialog", L"Assistent"},
    {L"ribbon.grpDocTools", L"Werkzeuge"},
    {L"ribbon.grpTerminology", L"Glossar"},
    {L"ribbon.grpTranslate", L"Übersetzen"},
    {L"ribbon.tabQuorvantis", L"KI-Assistent"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"Aktuelle Folie"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"Die aktuelle Folie übersetzen"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"Ganze Präsentation"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"Die ganze Präsentation übersetzen"},
    {L"ribbon.word.btnAiAutofill", L"Automatisch ausfüllen"},
    {L"ribbon.word.btnAiAutofill.tip", L"Die Lücken im Dokument ausfüllen"},
    {L"ribbon.word.btnAiChat", L"KI-Chat"},
    {L"ribbon.word.btnAiChat.tip", L"Den Assistenten zu diesem Dokument befragen"},
    {L"ribbon.word.btnDeleteBlankLines", L"Leerzeilen löschen"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"Die Leerzeilen des Dokuments löschen"},
    {L"ribbon.word.btnImageToWord", L"Bild in Text"},
    {L"ribbon.word.btnImageToWord.tip", L"Ein Bild in bearbeitbaren Text umwandeln"},
    {L"ribbon.word.btnTranslateFullDoc", L"Ganzes Dokument"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"Das ganze Dokument übersetzen"},
    {L"settings.body",
     L"Das Menüband wird sofort aktualisiert. Andere bereits geöffnete Office-Fenster übernehmen die "
     L"Änderung, sobald ihr Menüband das nächste Mal geladen wird."},
    {L"settings.cancel", L"Abbrechen"},
    {L"settings.ok", L"OK"},
    {L"settings.title", L"Anzeigesprache"},
    {L"settings.writeFailed",
     L"Die Spracheinstellung konnte nicht gespeichert werden. Überprüfen Sie, ob Sie Schreibzugriff auf "
     L"Ihre Konfigurationsdatei haben."},
};

}  // namespace

CatalogRows CatalogDe() {
  return kRows;
}

}  // namespace qv
