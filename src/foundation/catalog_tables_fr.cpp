#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"Lignes vides supprimées\u00A0: {count}"},
    {L"blank.excel.failed", L"\nNon supprimées\u00A0: {count} (la feuille est peut-être protégée)"},
    {L"blank.excel.foundFailed",
     L"Lignes vides trouvées\u00A0: {count}. Aucune n’a été supprimée (échecs\u00A0: {failed}).\n\n"
     L"Assurez-vous que la feuille n’est pas protégée."},
    {L"blank.excel.none", L"Aucune ligne vide n’a été trouvée."},
    {L"blank.excel.noneHint",
     L"\n\nDans la plage utilisée, une ligne n’est supprimée que si toutes ses cellules sont vides et ne "
     L"contiennent aucune formule. Si plusieurs lignes sont sélectionnées, seules ces lignes sont "
     L"analysées. Si une seule cellule ou une seule ligne est sélectionnée, toute la plage utilisée est "
     L"analysée."},
    {L"blank.excel.prompt", L"Lignes vides trouvées\u00A0: {count}. Voulez-vous les supprimer\u00A0?"},
    {L"blank.excel.title", L"Supprimer les lignes vides"},
    {L"blank.word.deleted", L"Lignes vides supprimées\u00A0: {count}"},
    {L"blank.word.failed", L"\nNon supprimées\u00A0: {count} (le document est peut-être protégé)"},
    {L"blank.word.foundFailed",
     L"Lignes vides trouvées\u00A0: {count}. Aucune n’a été supprimée (échecs\u00A0: {failed}).\n\n"
     L"Assurez-vous que le document n’est pas protégé."},
    {L"blank.word.kept",
     L"\nConservées\u00A0: {count} (nécessaires au document, par exemple avant un tableau ou un saut de "
     L"section)"},
    {L"blank.word.none", L"Aucune ligne vide n’a été trouvée."},
    {L"blank.word.noneHint",
     L"\n\nUne ligne n’est supprimée que si son paragraphe ne contient ni texte, ni image, ni saut. S’il y "
     L"a une sélection, seuls les paragraphes sélectionnés sont analysés. Sans sélection, tout le document "
     L"est analysé."},
    {L"blank.word.prompt", L"Lignes vides trouvées\u00A0: {count}. Voulez-vous les supprimer\u00A0?"},
    {L"blank.word.title", L"Supprimer les lignes vides"},
    {L"msg.browserFailed",
     L"Impossible d’ouvrir le navigateur. Vérifiez le navigateur par défaut du système."},
    {L"msg.createPaneFailed", L"Impossible de créer le volet Office.\nHRESULT\u00A0: {hr}"},
    {L"msg.hostNotReady.excel", L"Excel n’est pas prêt. Redémarrez Excel, puis réessayez."},
    {L"msg.hostNotReady.ppt", L"PowerPoint n’est pas prêt. Redémarrez PowerPoint, puis réessayez."},
    {L"msg.hostNotReady.word", L"Word n’est pas prêt. Redémarrez Word, puis réessayez."},
    {L"msg.noWindow.excel",
     L"La fenêtre Excel actuelle n’est pas disponible.\n"
     L"Ouvrez un classeur, puis réessayez."},
    {L"msg.noWindow.ppt",
     L"La fenêtre PowerPoint actuelle n’est pas disponible.\n"
     L"Ouvrez une présentation, puis réessayez."},
    {L"msg.noWindow.word",
     L"La fenêtre Word actuelle n’est pas disponible.\n"
     L"Ouvrez un document, puis réessayez."},
    {L"msg.paneFactory.excel", L"Impossible de créer le volet Office.\nRedémarrez Excel, puis réessayez."},
    {L"msg.paneFactory.ppt",
     L"Impossible de créer le volet Office.\n"
     L"Redémarrez PowerPoint, puis réessayez."},
    {L"msg.paneFactory.word", L"Impossible de créer le volet Office.\nRedémarrez Word, puis réessayez."},
    {L"msg.paneTitle", L"Assistant IA \u00B7 quorvantis.example"},
    {L"msg.title", L"Assistant IA"},
    {L"msg.webview2.body",
     L"Le volet latéral ne peut pas s’ouvrir, car son composant de navigateur n’a pas pu démarrer.\n\n"
     L"Vérifiez si le lecteur C: est plein, libérez de l’espace, puis rouvrez le volet latéral.\n\n"
     L"Si le problème persiste, contactez l’assistance\u00A0: " QV_SUPPORT_CONTACT L"\n"
     L"À la fermeture de ce message, cette adresse est copiée dans le Presse-papiers."},
    {L"msg.welcome.body",
     L"L’Assistant IA est installé. Voulez-vous l’ouvrir et vous connecter maintenant\u00A0?\n\n"
     L"Vous pouvez aussi ouvrir plus tard l’onglet «\u00A0Assistant IA\u00A0» du ruban."},
    {L"ribbon.btnAccount", L"Compte"},
    {L"ribbon.btnAccount.tip", L"Se connecter et afficher votre abonnement"},
    {L"ribbon.btnGlossary", L"Glossaire"},
    {L"ribbon.btnGlossary.tip", L"Termes à traduire toujours de la même façon"},
    {L"ribbon.btnGrammar", L"Grammaire"},
    {L"ribbon.btnGrammar.tip", L"Vérifier et améliorer le texte sélectionné"},
    {L"ribbon.btnImageTranslate", L"Images"},
    {L"ribbon.btnImageTranslate.tip", L"Traduire le texte des images"},
    {L"ribbon.btnInstruction", L"Instructions"},
    {L"ribbon.btnInstruction.tip", L"Vos propres instructions de traduction"},
    {L"ribbon.btnPdfTranslate", L"Traduire un PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"Traduire un fichier PDF dans le navigateur"},
    {L"ribbon.btnQuickTranslate", L"Traduction rapide"},
    {L"ribbon.btnQuickTranslate.tip", L"Traduire le mot situé sous le pointeur"},
    {L"ribbon.btnSettings", L"Paramètres"},
    {L"ribbon.btnSettings.tip", L"Langue d’affichage"},
    {L"ribbon.btnSupport", L"Assistance"},
    {L"ribbon.btnSupport.tip", L"Obtenir de l’aide"},
    {L"ribbon.btnTranslateSelection", L"Sélection"},
    {L"ribbon.btnTranslateSelection.tip", L"Traduire la sélection actuelle"},
    {L"ribbon.excel.btnAiAgents", L"Agent de codage"},
    {L"ribbon.excel.btnAiAgents.tip", L"Agents de codage"},
    {L"ribbon.excel.btnAiChat", L"Chat IA"},
    {L"ribbon.excel.btnAiChat.tip", L"Interroger l’assistant sur ce classeur"},
    {L"ribbon.excel.btnDeleteBlankRows", L"Supprimer les lignes vides"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"Supprimer les lignes vides de la feuille"},
    {L"ribbon.excel.btnImageToTable", L"Image vers tableau"},
    {L"ribbon.excel.btnImageToTable.tip", L"Convertir l’image d’un tableau en cellules"},
    {L"ribbon.excel.btnPdfToTable", L"PDF vers tableau"},
    {L"ribbon.excel.btnPdfToTable.tip", L"Convertir les tableaux d’un fichier PDF en cellules"},
    {L"ribbon.excel.btnTranslateFullDoc", L"Feuille entière"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"Traduire toute la feuille"},
    {L"ribbon.grpAccount", L"Compte"},
    {L"ribbon.grpDialog", L"Assistant"},
    {L"ribbon.grpDocTools", L"Outils"},
    {L"ribbon.grpTerminology", L"Glossaire"},
    {L"ribbon.grpTranslate", L"Traduire"},
    {L"ribbon.tabQuorvantis", L"Assistant IA"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"Diapositive actuelle"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"Traduire la diapositive actuelle"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"Présentation entière"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"Traduire toute la présentation"},
    {L"ribbon.word.btnAiAutofill", L"Remplissage auto"},
    {L"ribbon.word.btnAiAutofill.tip", L"Remplir les champs vides du document"},
    {L"ribbon.word.btnAiChat", L"Chat IA"},
    {L"ribbon.word.btnAiChat.tip", L"Interroger l’assistant sur ce document"},
    {L"ribbon.word.btnDeleteBlankLines", L"Supprimer les lignes vides"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"Supprimer les lignes vides du document"},
    {L"ribbon.word.btnImageToWord", L"Image vers texte"},
    {L"ribbon.word.btnImageToWord.tip", L"Convertir une image en texte modifiable"},
    {L"ribbon.word.btnTranslateFullDoc", L"Document entier"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"Traduire tout le document"},
    {L"settings.body",
     L"Le ruban est mis à jour immédiatement. Les autres fenêtres Office déjà ouvertes prendront le "
     L"changement en compte au prochain chargement de leur ruban."},
    {L"settings.cancel", L"Annuler"},
    {L"settings.ok", L"OK"},
    {L"settings.title", L"Langue d’affichage"},
    {L"settings.writeFailed",
     L"Impossible d’enregistrer le paramètre de langue. Vérifiez que vous pouvez écrire dans le fichier de "
     L"configuration de l’utilisateur."},
};

}  // namespace

CatalogRows CatalogFr() {
  return kRows;
}

}  // namespace qv
