#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"Filas en blanco eliminadas: {count}"},
    {L"blank.excel.failed", L"\nNo eliminadas: {count} (es posible que la hoja esté protegida)"},
    {L"blank.excel.foundFailed",
     L"Filas en blanco encontradas: {count}. No se eliminó ninguna (errores: {failed}).\n\n"
     L"Asegúrese de que la hoja no esté protegida."},
    {L"blank.excel.none", L"No se encontraron filas en blanco."},
    {L"blank.excel.noneHint",
     L"\n\nDentro del rango usado, una fila solo se elimina si todas sus celdas están vacías y no "
     L"contienen fórmulas. Si se seleccionan varias filas, solo se analizan esas filas. Si se selecciona "
     L"una sola celda o una sola fila, se analiza todo el rango usado."},
    {L"blank.excel.prompt", L"Filas en blanco encontradas: {count}. ¿Desea eliminarlas?"},
    {L"blank.excel.title", L"Eliminar filas en blanco"},
    {L"blank.word.deleted", L"Líneas en blanco eliminadas: {count}"},
    {L"blank.word.failed", L"\nNo eliminadas: {count} (es posible que el documento esté protegido)"},
    {L"blank.word.foundFailed",
     L"Líneas en blanco encontradas: {count}. No se eliminó ninguna (errores: {failed}).\n\n"
     L"Asegúrese de que el documento no esté protegido."},
    {L"blank.word.kept",
     L"\nConservadas: {count} (el documento las necesita; por ejemplo, antes de una tabla o de un salto de "
     L"sección)"},
    {L"blank.word.none", L"No se encontraron líneas en blanco."},
    {L"blank.word.noneHint",
     L"\n\nUna línea solo se elimina si su párrafo no contiene texto, imágenes ni saltos. Si hay una "
     L"selección, solo se analizan los párrafos seleccionados. Si no hay ninguna selección, se analiza "
     L"todo el documento."},
    {L"blank.word.prompt", L"Líneas en blanco encontradas: {count}. ¿Desea eliminarlas?"},
    {L"blank.word.title", L"Eliminar líneas en blanco"},
    {L"msg.browserFailed",
     L"No se pudo abrir el navegador. Compruebe el navegador predeterminado del sistema."},
    {L"msg.createPaneFailed", L"No se pudo crear el panel de tareas.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel", L"Excel no está listo. Reinicie Excel e inténtelo de nuevo."},
    {L"msg.hostNotReady.ppt", L"PowerPoint no está listo. Reinicie PowerPoint e inténtelo de nuevo."},
    {L"msg.hostNotReady.word", L"Word no está listo. Reinicie Word e inténtelo de nuevo."},
    {L"msg.noWindow.excel",
     L"La ventana actual de Excel no está disponible.\n"
     L"Abra un libro e inténtelo de nuevo."},
    {L"msg.noWindow.ppt",
     L"La ventana actual de PowerPoint no está disponible.\n"
     L"Abra una presentación e inténtelo de nuevo."},
    {L"msg.noWindow.word",
     L"La ventana actual de Word no está disponible.\n"
     L"Abra un documento e inténtelo de nuevo."},
    {L"msg.paneFactory.excel",
     L"No se pudo crear el panel de tareas.\n"
     L"Reinicie Excel e inténtelo de nuevo."},
    {L"msg.paneFactory.ppt",
     L"No se pudo crear el panel de tareas.\n"
     L"Reinicie PowerPoint e inténtelo de nuevo."},
    {L"msg.paneFactory.word", L"No se pudo crear el panel de tareas.\nReinicie Word e inténtelo de nuevo."},
    {L"msg.paneTitle", L"Asistente de IA \u00B7 quorvantis.example"},
    {L"msg.title", L"Asistente de IA"},
    {L"msg.webview2.body",
     L"No se puede abrir la barra lateral porque no se pudo iniciar su componente de navegador.\n\n"
     L"Compruebe si la unidad C: está llena, libere espacio y vuelva a abrir la barra lateral.\n\n"
     L"Si el problema continúa, póngase en contacto con el soporte técnico: " QV_SUPPORT_CONTACT L"\n"
     L"Al cerrar este mensaje, ese contacto se copiará en el Portapapeles."},
    {L"msg.welcome.body",
     L"El Asistente de IA está instalado. ¿Desea abrirlo e iniciar sesión ahora?\n\n"
     L"También puede abrir más tarde la pestaña «Asistente de IA» de la cinta de opciones."},
    {L"ribbon.btnAccount", L"Cuenta"},
    {L"ribbon.btnAccount.tip", L"Iniciar sesión y ver su plan"},
    {L"ribbon.btnGlossary", L"Glosario"},
    {L"ribbon.btnGlossary.tip", L"Términos con una traducción fija"},
    {L"ribbon.btnGrammar", L"Gramática"},
    {L"ribbon.btnGrammar.tip", L"Revisar y mejorar el texto seleccionado"},
    {L"ribbon.btnImageTranslate", L"Imágenes"},
    {L"ribbon.btnImageTranslate.tip", L"Traducir el texto de las imágenes"},
    {L"ribbon.btnInstruction", L"Instrucciones"},
    {L"ribbon.btnInstruction.tip", L"Sus propias instrucciones de traducción"},
    {L"ribbon.btnPdfTranslate", L"Traducir PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"Traducir un archivo PDF en el navegador"},
    {L"ribbon.btnQuickTranslate", L"Traducción rápida"},
    {L"ribbon.btnQuickTranslate.tip", L"Traducir la palabra situada bajo el puntero"},
    {L"ribbon.btnSettings", L"Configuración"},
    {L"ribbon.btnSettings.tip", L"Idioma para mostrar"},
    {L"ribbon.btnSupport", L"Soporte técnico"},
    {L"ribbon.btnSupport.tip", L"Obtener ayuda"},
    {L"ribbon.btnTranslateSelection", L"Selección"},
    {L"ribbon.btnTranslateSelection.tip", L"Traducir la selección actual"},
    {L"ribbon.excel.btnAiAgents", L"Agente de programación"},
    {L"ribbon.excel.btnAiAgents.tip", L"Agentes de programación"},
    {L"ribbon.excel.btnAiChat", L"Chat de IA"},
    {L"ribbon.excel.btnAiChat.tip", L"Preguntar al asistente sobre este libro"},
    {L"ribbon.excel.btnDeleteBlankRows", L"Eliminar filas en blanco"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"Eliminar las filas en blanco de la hoja"},
    {L"ribbon.excel.btnImageToTable", L"Imagen a tabla"},
    {L"ribbon.excel.btnImageToTable.tip", L"Convertir la imagen de una tabla en celdas"},
    {L"ribbon.excel.btnPdfToTable", L"PDF a tabla"},
    {L"ribbon.excel.btnPdfToTable.tip", L"Convertir las tablas de un archivo PDF en celdas"},
    {L"ribbon.excel.btnTranslateFullDoc", L"Toda la hoja"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"Traducir toda la hoja"},
    {L"ribbon.grpAccount", L"Cuenta"},
    {L"ribbon.grpDialog", L"Asistente"},
    {L"ribbon.grpDocTools", L"Herramientas"},
    {L"ribbon.grpTerminology", L"Glosario"},
    {L"ribbon.grpTranslate", L"Traducir"},
    {L"ribbon.tabQuorvantis", L"Asistente de IA"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"Diapositiva actual"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"Traducir la diapositiva actual"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"Toda la presentación"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"Traducir toda la presentación"},
    {L"ribbon.word.btnAiAutofill", L"Autorrellenar"},
    {L"ribbon.word.btnAiAutofill.tip", L"Rellenar los espacios en blanco del documento"},
    {L"ribbon.word.btnAiChat", L"Chat de IA"},
    {L"ribbon.word.btnAiChat.tip", L"Preguntar al asistente sobre este documento"},
    {L"ribbon.word.btnDeleteBlankLines", L"Eliminar líneas en blanco"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"Eliminar las líneas en blanco del documento"},
    {L"ribbon.word.btnImageToWord", L"Imagen a texto"},
    {L"ribbon.word.btnImageToWord.tip", L"Convertir una imagen en texto editable"},
    {L"ribbon.word.btnTranslateFullDoc", L"Todo el documento"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"Traducir todo el documento"},
    {L"settings.body",
     L"La cinta de opciones se actualiza de inmediato. Las demás ventanas de Office que ya están abiertas "
     L"aplicarán el cambio la próxima vez que se cargue su cinta de opciones."},
    {L"settings.cancel", L"Cancelar"},
    {L"settings.ok", L"Aceptar"},
    {L"settings.title", L"Idioma para mostrar"},
    {L"settings.writeFailed",
     L"No se pudo guardar la configuración de idioma. Compruebe que tiene permiso para escribir en el "
     L"archivo de configuración del usuario."},
};

}  // namespace

CatalogRows CatalogEs() {
  return kRows;
}

}  // namespace qv
