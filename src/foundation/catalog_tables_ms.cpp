#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"{count} baris kosong telah dipadamkan."},
    {L"blank.excel.failed", L"\n{count} baris tidak dapat dipadamkan (lembaran mungkin dilindungi)."},
    {L"blank.excel.foundFailed",
     L"{count} baris kosong ditemui, tetapi tiada yang dipadamkan ({failed} gagal).\n\n"
     L"Pastikan lembaran tidak dilindungi."},
    {L"blank.excel.none", L"Tiada baris kosong ditemui."},
    {L"blank.excel.noneHint",
     L"\n\nDalam julat yang digunakan, sesuatu baris hanya dipadamkan apabila semua selnya kosong dan "
     L"tidak mengandungi formula. Jika beberapa baris dipilih, hanya baris tersebut diimbas. Jika hanya "
     L"satu sel atau satu baris dipilih, seluruh julat yang digunakan akan diimbas."},
    {L"blank.excel.prompt", L"{count} baris kosong ditemui. Padamkan baris tersebut?"},
    {L"blank.excel.title", L"Padam baris kosong"},
    {L"blank.word.deleted", L"{count} baris kosong telah dipadamkan."},
    {L"blank.word.failed", L"\n{count} baris tidak dapat dipadamkan (dokumen mungkin dilindungi)."},
    {L"blank.word.foundFailed",
     L"{count} baris kosong ditemui, tetapi tiada yang dipadamkan ({failed} gagal).\n\n"
     L"Pastikan dokumen tidak dilindungi."},
    {L"blank.word.kept",
     L"\n{count} baris dikekalkan kerana dokumen memerlukannya (contohnya sebelum jadual atau pemisah "
     L"seksyen)."},
    {L"blank.word.none", L"Tiada baris kosong ditemui."},
    {L"blank.word.noneHint",
     L"\n\nSesuatu baris hanya dipadamkan apabila perenggannya tidak mengandungi teks, gambar atau "
     L"pemisah. Jika terdapat pilihan, hanya perenggan yang dipilih diimbas. Tanpa pilihan, seluruh "
     L"dokumen akan diimbas."},
    {L"blank.word.prompt", L"{count} baris kosong ditemui. Padamkan baris tersebut?"},
    {L"blank.word.title", L"Padam baris kosong"},
    {L"msg.browserFailed", L"Pelayar tidak dapat dibuka. Semak pelayar lalai sistem."},
    {L"msg.createPaneFailed", L"Anak tetingkap tugas tidak dapat dicipta.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel", L"Excel belum bersedia. Mulakan semula Excel, kemudian cuba lagi."},
    {L"msg.hostNotReady.ppt", L"PowerPoint belum bersedia. Mulakan semula PowerPoint, kemudian cuba lagi."},
    {L"msg.hostNotReady.word", L"Word belum bersedia. Mulakan semula Word, kemudian cuba lagi."},
    {L"msg.noWindow.excel", L"Tetingkap Excel semasa tidak tersedia.\nBuka buku kerja, kemudian cuba lagi."},
    {L"msg.noWindow.ppt",
     L"Tetingkap PowerPoint semasa tidak tersedia.\n"
     L"Buka persembahan, kemudian cuba lagi."},
    {L"msg.noWindow.word", L"Tetingkap Word semasa tidak tersedia.\nBuka dokumen, kemudian cuba lagi."},
    {L"msg.paneFactory.excel",
     L"Anak tetingkap tugas tidak dapat dicipta.\n"
     L"Mulakan semula Excel, kemudian cuba lagi."},
    {L"msg.paneFactory.ppt",
     L"Anak tetingkap tugas tidak dapat dicipta.\n"
     L"Mulakan semula PowerPoint, kemudian cuba lagi."},
    {L"msg.paneFactory.word",
     L"Anak tetingkap tugas tidak dapat dicipta.\n"
     L"Mulakan semula Word, kemudian cuba lagi."},
    {L"msg.paneTitle", L"Pembantu AI \u00B7 quorvantis.example"},
    {L"msg.title", L"Pembantu AI"},
    {L"msg.webview2.body",
     L"Bar sisi tidak dapat dibuka kerana komponen pelayarnya gagal dimulakan.\n\n"
     L"Semak sama ada pemacu C: penuh, kosongkan sedikit ruang, kemudian buka semula bar sisi.\n\n"
     L"Jika masalah berterusan, hubungi sokongan: " QV_SUPPORT_CONTACT L"\n"
     L"Maklumat hubungan itu akan disalin ke papan klip apabila mesej ini ditutup."},
    {L"msg.welcome.body",
     L"Pembantu AI telah dipasang. Buka dan daftar masuk sekarang?\n\n"
     L"Anda juga boleh membuka tab Pembantu AI pada reben kemudian."},
    {L"ribbon.btnAccount", L"Akaun"},
    {L"ribbon.btnAccount.tip", L"Daftar masuk dan lihat pelan anda"},
    {L"ribbon.btnGlossary", L"Glosari"},
    {L"ribbon.btnGlossary.tip", L"Istilah dengan terjemahan tetap"},
    {L"ribbon.btnGrammar", L"Tatabahasa"},
    {L"ribbon.btnGrammar.tip", L"Semak dan perbaik teks yang dipilih"},
    {L"ribbon.btnImageTranslate", L"Gambar"},
    {L"ribbon.btnImageTranslate.tip", L"Terjemah teks dalam gambar"},
    {L"ribbon.btnInstruction", L"Arahan"},
    {L"ribbon.btnInstruction.tip", L"Arahan terjemahan anda sendiri"},
    {L"ribbon.btnPdfTranslate", L"Terjemah PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"Terjemah fail PDF dalam pelayar"},
    {L"ribbon.btnQuickTranslate", L"Terjemahan pantas"},
    {L"ribbon.btnQuickTranslate.tip", L"Terjemah perkataan di bawah penuding"},
    {L"ribbon.btnSettings", L"Tetapan"},
    {L"ribbon.btnSettings.tip", L"Bahasa paparan"},
    {L"ribbon.btnSupport", L"Sokongan"},
    {L"ribbon.btnSupport.tip", L"Dapatkan bantuan"},
    {L"ribbon.btnTranslateSelection", L"Pilihan"},
    {L"ribbon.btnTranslateSelection.tip", L"Terjemah pilihan semasa"},
    {L"ribbon.excel.btnAiAgents", L"Ejen pengekodan"},
    {L"ribbon.excel.btnAiAgents.tip", L"Ejen pengekodan"},
    {L"ribbon.excel.btnAiChat", L"Sembang AI"},
    {L"ribbon.excel.btnAiChat.tip", L"Tanya pembantu tentang buku kerja ini"},
    {L"ribbon.excel.btnDeleteBlankRows", L"Padam baris kosong"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"Padam baris kosong pada lembaran"},
    {L"ribbon.excel.btnImageToTable", L"Gambar ke jadual"},
    {L"ribbon.excel.btnImageToTable.tip", L"Tukar gambar jadual kepada sel"},
    {L"ribbon.excel.btnPdfToTable", L"PDF ke jadual"},
    {L"ribbon.excel.btnPdfToTable.tip", L"Tukar jadual dalam fail PDF kepada sel"},
    {L"ribbon.excel.btnTranslateFullDoc", L"Seluruh lembaran"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"Terjemah seluruh lembaran"},
    {L"ribbon.grpAccount", L"Akaun"},
    {L"ribbon.grpDialog", L"Pembantu"},
    {L"ribbon.grpDocTools", L"Alat"},
    {L"ribbon.grpTerminology", L"Glosari"},
    {L"ribbon.grpTranslate", L"Terjemah"},
    {L"ribbon.tabQuorvantis", L"Pembantu AI"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"Slaid semasa"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"Terjemah slaid semasa"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"Seluruh persembahan"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"Terjemah seluruh persembahan"},
    {L"ribbon.word.btnAiAutofill", L"Isi automatik"},
    {L"ribbon.word.btnAiAutofill.tip", L"Isi tempat kosong dalam dokumen"},
    {L"ribbon.word.btnAiChat", L"Sembang AI"},
    {L"ribbon.word.btnAiChat.tip", L"Tanya pembantu tentang dokumen ini"},
    {L"ribbon.word.btnDeleteBlankLines", L"Padam baris kosong"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"Padam baris kosong dalam dokumen"},
    {L"ribbon.word.btnImageToWord", L"Gambar ke teks"},
    {L"ribbon.word.btnImageToWord.tip", L"Tukar gambar kepada teks yang boleh diedit"},
    {L"ribbon.word.btnTranslateFullDoc", L"Seluruh dokumen"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"Terjemah seluruh dokumen"},
    {L"settings.body",
     L"Reben dikemas kini serta-merta. Tetingkap Office lain yang sudah dibuka akan mengikut perubahan ini "
     L"apabila rebennya dimuatkan lagi."},
    {L"settings.cancel", L"Batal"},
    {L"settings.ok", L"OK"},
    {L"settings.title", L"Bahasa paparan"},
    {L"settings.writeFailed",
     L"Tetapan bahasa tidak dapat disimpan. Pastikan anda boleh menulis pada fail konfigurasi pengguna."},
};

}  // namespace

CatalogRows CatalogMs() {
  return kRows;
}

}  // namespace qv
