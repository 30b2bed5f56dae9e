#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"{count} baris kosong telah dihapus."},
    {L"blank.excel.failed", L"\n{count} baris tidak dapat dihapus (lembar mungkin diproteksi)."},
    {L"blank.excel.foundFailed",
     L"{count} baris kosong ditemukan, tetapi tidak ada yang dihapus ({failed} gagal).\n\n"
     L"Pastikan lembar tidak diproteksi."},
    {L"blank.excel.none", L"Tidak ada baris kosong yang ditemukan."},
    {L"blank.excel.noneHint",
     L"\n\nDi dalam rentang yang digunakan, baris hanya dihapus jika semua selnya kosong dan tidak berisi "
     L"rumus. Jika beberapa baris dipilih, hanya baris tersebut yang diperiksa. Jika hanya satu sel atau "
     L"satu baris yang dipilih, seluruh rentang yang digunakan akan diperiksa."},
    {L"blank.excel.prompt", L"{count} baris kosong ditemukan. Hapus baris tersebut?"},
    {L"blank.excel.title", L"Hapus baris kosong"},
    {L"blank.word.deleted", L"{count} baris kosong telah dihapus."},
    {L"blank.word.failed", L"\n{count} baris tidak dapat dihapus (dokumen mungkin diproteksi)."},
    {L"blank.word.foundFailed",
     L"{count} baris kosong ditemukan, tetapi tidak ada yang dihapus ({failed} gagal).\n\n"
     L"Pastikan dokumen tidak diproteksi."},
    {L"blank.word.kept",
     L"\n{count} baris dipertahankan karena diperlukan oleh dokumen (misalnya sebelum tabel atau hentian "
     L"bagian)."},
    {L"blank.word.none", L"Tidak ada baris kosong yang ditemukan."},
    {L"blank.word.noneHint",
     L"\n\nBaris hanya dihapus jika paragrafnya tidak berisi teks, gambar, atau hentian. Jika ada pilihan, "
     L"hanya paragraf yang dipilih yang diperiksa. Tanpa pilihan, seluruh dokumen akan diperiksa."},
    {L"blank.word.prompt", L"{count} baris kosong ditemukan. Hapus baris tersebut?"},
    {L"blank.word.title", L"Hapus baris kosong"},
    {L"msg.browserFailed", L"Browser tidak dapat dibuka. Periksa browser default sistem."},
    {L"msg.createPaneFailed", L"Panel tugas tidak dapat dibuat.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel", L"Excel belum siap. Mulai ulang Excel, lalu coba lagi."},
    {L"msg.hostNotReady.ppt", L"PowerPoint belum siap. Mulai ulang PowerPoint, lalu coba lagi."},
    {L"msg.hostNotReady.word", L"Word belum siap. Mulai ulang Word, lalu coba lagi."},
    {L"msg.noWindow.excel", L"Jendela Excel saat ini tidak tersedia.\nBuka buku kerja, lalu coba lagi."},
    {L"msg.noWindow.ppt", L"Jendela PowerPoint saat ini tidak tersedia.\nBuka presentasi, lalu coba lagi."},
    {L"msg.noWindow.word", L"Jendela Word saat ini tidak tersedia.\nBuka dokumen, lalu coba lagi."},
    {L"msg.paneFactory.excel", L"Panel tugas tidak dapat dibuat.\nMulai ulang Excel, lalu coba lagi."},
    {L"msg.paneFactory.ppt", L"Panel tugas tidak dapat dibuat.\nMulai ulang PowerPoint, lalu coba lagi."},
    {L"msg.paneFactory.word", L"Panel tugas tidak dapat dibuat.\nMulai ulang Word, lalu coba lagi."},
    {L"msg.paneTitle", L"Asisten AI \u00B7 quorvantis.example"},
    {L"msg.title", L"Asisten AI"},
    {L"msg.webview2.body",
     L"Bilah samping tidak dapat dibuka karena komponen browsernya gagal dimulai.\n\n"
     L"Periksa apakah drive C: penuh, kosongkan sebagian ruang, lalu buka kembali bilah samping.\n\n"
     L"Jika masalah berlanjut, hubungi dukungan: " QV_SUPPORT_CONTACT L"\n"
     L"Kontak tersebut akan disalin ke clipboard saat pesan ini ditutup."},
    {L"msg.welcome.body",
     L"Asisten AI telah diinstal. Buka dan masuk sekarang?\n\n"
     L"Anda juga dapat membuka tab Asisten AI di pita nanti."},
    {L"ribbon.btnAccount", L"Akun"},
    {L"ribbon.btnAccount.tip", L"Masuk dan lihat paket Anda"},
    {L"ribbon.btnGlossary", L"Glosarium"},
    {L"ribbon.btnGlossary.tip", L"Istilah dengan terjemahan tetap"},
    {L"ribbon.btnGrammar", L"Tata bahasa"},
    {L"ribbon.btnGrammar.tip", L"Periksa dan perbaiki teks yang dipilih"},
    {L"ribbon.btnImageTranslate", L"Gambar"},
    {L"ribbon.btnImageTranslate.tip", L"Terjemahkan teks dalam gambar"},
    {L"ribbon.btnInstruction", L"Instruksi"},
    {L"ribbon.btnInstruction.tip", L"Instruksi terjemahan Anda sendiri"},
    {L"ribbon.btnPdfTranslate", L"Terjemahkan PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"Terjemahkan file PDF di browser"},
    {L"ribbon.btnQuickTranslate", L"Terjemahan cepat"},
    {L"ribbon.btnQuickTranslate.tip", L"Terjemahkan kata di bawah penunjuk"},
    {L"ribbon.btnSettings", L"Pengaturan"},
    {L"ribbon.btnSettings.tip", L"Bahasa tampilan"},
    {L"ribbon.btnSupport", L"Dukungan"},
    {L"ribbon.btnSupport.tip", L"Dapatkan bantuan"},
    {L"ribbon.btnTranslateSelection", L"Pilihan"},
    {L"ribbon.btnTranslateSelection.tip", L"Terjemahkan pilihan saat ini"},
    {L"ribbon.excel.btnAiAgents", L"Agen pengodean"},
    {L"ribbon.excel.btnAiAgents.tip", L"Agen pengodean"},
    {L"ribbon.excel.btnAiChat", L"Obrolan AI"},
    {L"ribbon.excel.btnAiChat.tip", L"Bertanya kepada asisten tentang buku kerja ini"},
    {L"ribbon.excel.btnDeleteBlankRows", L"Hapus baris kosong"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"Hapus baris kosong di lembar"},
    {L"ribbon.excel.btnImageToTable", L"Gambar ke tabel"},
    {L"ribbon.excel.btnImageToTable.tip", L"Ubah gambar tabel menjadi sel"},
    {L"ribbon.excel.btnPdfToTable", L"PDF ke tabel"},
    {L"ribbon.excel.btnPdfToTable.tip", L"Ubah tabel dalam file PDF menjadi sel"},
    {L"ribbon.excel.btnTranslateFullDoc", L"Seluruh lembar"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"Terjemahkan seluruh lembar"},
    {L"ribbon.grpAccount", L"Akun"},
    {L"ribbon.grpDialog", L"Asisten"},
    {L"ribbon.grpDocTools", L"Alat"},
    {L"ribbon.grpTerminology", L"Glosarium"},
    {L"ribbon.grpTranslate", L"Terjemahkan"},
    {L"ribbon.tabQuorvantis", L"Asisten AI"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"Slide saat ini"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"Terjemahkan slide saat ini"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"Seluruh presentasi"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"Terjemahkan seluruh presentasi"},
    {L"ribbon.word.btnAiAutofill", L"Isi otomatis"},
    {L"ribbon.word.btnAiAutofill.tip", L"Isi bagian kosong dalam dokumen"},
    {L"ribbon.word.btnAiChat", L"Obrolan AI"},
    {L"ribbon.word.btnAiChat.tip", L"Bertanya kepada asisten tentang dokumen ini"},
    {L"ribbon.word.btnDeleteBlankLines", L"Hapus baris kosong"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"Hapus baris kosong dalam dokumen"},
    {L"ribbon.word.btnImageToWord", L"Gambar ke teks"},
    {L"ribbon.word.btnImageToWord.tip", L"Ubah gambar menjadi teks yang dapat diedit"},
    {L"ribbon.word.btnTranslateFullDoc", L"Seluruh dokumen"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"Terjemahkan seluruh dokumen"},
    {L"settings.body",
     L"Pita langsung diperbarui. Jendela Office lain yang sudah terbuka akan mengikuti perubahan ini saat "
     L"pitanya dimuat lagi."},
    {L"settings.cancel", L"Batal"},
    {L"settings.ok", L"OK"},
    {L"settings.title", L"Bahasa tampilan"},
    {L"settings.writeFailed",
     L"Pengaturan bahasa tidak dapat disimpan. Pastikan Anda dapat menulis ke file konfigurasi pengguna."},
};

}  // namespace

CatalogRows CatalogId() {
  return kRows;
}

}  // namespace qv
