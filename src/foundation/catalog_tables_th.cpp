#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"ลบแถวว่างแล้ว {count} แถว"},
    {L"blank.excel.failed", L"\nลบไม่ได้ {count} แถว (แผ่นงานอาจถูกป้องกันอยู่)"},
    {L"blank.excel.foundFailed",
     L"พบแถวว่าง {count} แถว แต่ไม่มีแถวใดถูกลบ (ล้มเหลว {failed} แถว)\n\n"
     L"โปรดตรวจสอบว่าแผ่นงานไม่ได้ถูกป้องกันอยู่"},
    {L"blank.excel.none", L"ไม่พบแถวว่าง"},
    {L"blank.excel.noneHint",
     L"\n\nในช่วงที่ใช้งาน ระบบจะลบแถวเฉพาะเมื่อทุกเซลล์ว่างและไม่มีสูตร หากเลือกไว้หลายแถว ระบบจะตรวจสอบเฉพาะแถวเหล่านั้น "
     L"หากเลือกไว้เพียงเซลล์เดียวหรือแถวเดียว ระบบจะตรวจสอบช่วงที่ใช้งานทั้งหมด"},
    {L"blank.excel.prompt", L"พบแถวว่าง {count} แถว ต้องการลบหรือไม่"},
    {L"blank.excel.title", L"ลบแถวว่าง"},
    {L"blank.word.deleted", L"ลบบรรทัดว่างแล้ว {count} บรรทัด"},
    {L"blank.word.failed", L"\nลบไม่ได้ {count} บรรทัด (เอกสารอาจถูกป้องกันอยู่)"},
    {L"blank.word.foundFailed",
     L"พบบรรทัดว่าง {count} บรรทัด แต่ไม่มีบรรทัดใดถูกลบ (ล้มเหลว {failed} บรรทัด)\n\n"
     L"โปรดตรวจสอบว่าเอกสารไม่ได้ถูกป้องกันอยู่"},
    {L"blank.word.kept", L"\nคงไว้ {count} บรรทัดเนื่องจากเอกสารจำเป็นต้องใช้ (เช่น ก่อนตารางหรือตัวแบ่งส่วน)"},
    {L"blank.word.none", L"ไม่พบบรรทัดว่าง"},
    {L"blank.word.noneHint",
     L"\n\nระบบจะลบบรรทัดเฉพาะเมื่อย่อหน้าไม่มีข้อความ รูปภาพ หรือตัวแบ่ง หากมีส่วนที่เลือก ระบบจะตรวจสอบเฉพาะย่อหน้าที่เลือก "
     L"หากไม่มีส่วนที่เลือก ระบบจะตรวจสอบทั้งเอกสาร"},
    {L"blank.word.prompt", L"พบบรรทัดว่าง {count} บรรทัด ต้องการลบหรือไม่"},
    {L"blank.word.title", L"ลบบรรทัดว่าง"},
    {L"msg.browserFailed", L"ไม่สามารถเปิดเบราว์เซอร์ได้ โปรดตรวจสอบเบราว์เซอร์เริ่มต้นของระบบ"},
    {L"msg.createPaneFailed", L"ไม่สามารถสร้างบานหน้าต่างงานได้\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel", L"Excel ยังไม่พร้อม โปรดเริ่ม Excel ใหม่แล้วลองอีกครั้ง"},
    {L"msg.hostNotReady.ppt", L"PowerPoint ยังไม่พร้อม โปรดเริ่ม PowerPoint ใหม่แล้วลองอีกครั้ง"},
    {L"msg.hostNotReady.word", L"Word ยังไม่พร้อม โปรดเริ่ม Word ใหม่แล้วลองอีกครั้ง"},
    {L"msg.noWindow.excel", L"หน้าต่าง Excel ปัจจุบันไม่พร้อมใช้งาน\nโปรดเปิดเวิร์กบุ๊กแล้วลองอีกครั้ง"},
    {L"msg.noWindow.ppt", L"หน้าต่าง PowerPoint ปัจจุบันไม่พร้อมใช้งาน\nโปรดเปิดงานนำเสนอแล้วลองอีกครั้ง"},
    {L"msg.noWindow.word", L"หน้าต่าง Word ปัจจุบันไม่พร้อมใช้งาน\nโปรดเปิดเอกสารแล้วลองอีกครั้ง"},
    {L"msg.paneFactory.excel", L"ไม่สามารถสร้างบานหน้าต่างงานได้\nโปรดเริ่ม Excel ใหม่แล้วลองอีกครั้ง"},
    {L"msg.paneFactory.ppt", L"ไม่สามารถสร้างบานหน้าต่างงานได้\nโปรดเริ่ม PowerPoint ใหม่แล้วลองอีกครั้ง"},
    {L"msg.paneFactory.word", L"ไม่สามารถสร้างบานหน้าต่างงานได้\nโปรดเริ่ม Word ใหม่แล้วลองอีกครั้ง"},
    {L"msg.paneTitle", L"ผู้ช่วย AI \u00B7 quorvantis.example"},
    {L"msg.title", L"ผู้ช่วย AI"},
    {L"msg.webview2.body",
     L"ไม่สามารถเปิดแถบด้านข้างได้เนื่องจากคอมโพเนนต์เบราว์เซอร์เริ่มทำงานไม่สำเร็จ\n\n"
     L"โปรดตรวจสอบว่าไดรฟ์ C: เต็มหรือไม่ เพิ่มพื้นที่ว่าง แล้วเปิดแถบด้านข้างอีกครั้ง\n\n"
     L"หากยังไม่ได้ผล โปรดติดต่อฝ่ายสนับสนุน: " QV_SUPPORT_CONTACT L"\n"
     L"เมื่อปิดข้อความนี้ ข้อมูลติดต่อดังกล่าวจะถูกคัดลอกไปยังคลิปบอร์ด"},
    {L"msg.welcome.body",
     L"ติดตั้งผู้ช่วย AI แล้ว ต้องการเปิดและลงชื่อเข้าใช้ตอนนี้หรือไม่\n\n"
     L"คุณยังสามารถเปิดแท็บ “ผู้ช่วย AI” บนริบบอนในภายหลังได้"},
    {L"ribbon.btnAccount", L"บัญชี"},
    {L"ribbon.btnAccount.tip", L"ลงชื่อเข้าใช้และดูแผนของคุณ"},
    {L"ribbon.btnGlossary", L"อภิธานศัพท์"},
    {L"ribbon.btnGlossary.tip", L"คำศัพท์ที่กำหนดคำแปลไว้ตายตัว"},
    {L"ribbon.btnGrammar", L"ไวยากรณ์"},
    {L"ribbon.btnGrammar.tip", L"ตรวจสอบและปรับปรุงข้อความที่เลือก"},
    {L"ribbon.btnImageTranslate", L"แปลรูปภาพ"},
    {L"ribbon.btnImageTranslate.tip", L"แปลข้อความในรูปภาพ"},
    {L"ribbon.btnInstruction", L"คำสั่งแปล"},
    {L"ribbon.btnInstruction.tip", L"คำสั่งการแปลของคุณเอง"},
    {L"ribbon.btnPdfTranslate", L"แปล PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"แปลไฟล์ PDF ในเบราว์เซอร์"},
    {L"ribbon.btnQuickTranslate", L"แปลด่วน"},
    {L"ribbon.btnQuickTranslate.tip", L"แปลคำที่อยู่ใต้ตัวชี้"},
    {L"ribbon.btnSettings", L"การตั้งค่า"},
    {L"ribbon.btnSettings.tip", L"ภาษาที่แสดง"},
    {L"ribbon.btnSupport", L"ฝ่ายสนับสนุน"},
    {L"ribbon.btnSupport.tip", L"รับความช่วยเหลือ"},
    {L"ribbon.btnTranslateSelection", L"ส่วนที่เลือก"},
    {L"ribbon.btnTranslateSelection.tip", L"แปลส่วนที่เลือกในปัจจุบัน"},
    {L"ribbon.excel.btnAiAgents", L"เอเจนต์เขียนโค้ด"},
    {L"ribbon.excel.btnAiAgents.tip", L"เอเจนต์เขียนโค้ด"},
    {L"ribbon.excel.btnAiChat", L"แชต AI"},
    {L"ribbon.excel.btnAiChat.tip", L"ถามผู้ช่วยเกี่ยวกับเวิร์กบุ๊กนี้"},
    {L"ribbon.excel.btnDeleteBlankRows", L"ลบแถวว่าง"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"ลบแถวว่างในแผ่นงาน"},
    {L"ribbon.excel.btnImageToTable", L"ภาพเป็นตาราง"},
    {L"ribbon.excel.btnImageToTable.tip", L"แปลงรูปภาพของตารางเป็นเซลล์"},
    {L"ribbon.excel.btnPdfToTable", L"PDF เป็นตาราง"},
    {L"ribbon.excel.btnPdfToTable.tip", L"แปลงตารางในไฟล์ PDF เป็นเซลล์"},
    {L"ribbon.excel.btnTranslateFullDoc", L"ทั้งแผ่นงาน"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"แปลทั้งแผ่นงาน"},
    {L"ribbon.grpAccount", L"บัญชี"},
    {L"ribbon.grpDialog", L"ผู้ช่วย"},
    {L"ribbon.grpDocTools", L"เครื่องมือ"},
    {L"ribbon.grpTerminology", L"อภิธานศัพท์"},
    {L"ribbon.grpTranslate", L"แปล"},
    {L"ribbon.tabQuorvantis", L"ผู้ช่วย AI"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"สไลด์ปัจจุบัน"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"แปลสไลด์ปัจจุบัน"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"ทั้งงานนำเสนอ"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"แปลทั้งงานนำเสนอ"},
    {L"ribbon.word.btnAiAutofill", L"กรอกอัตโนมัติ"},
    {L"ribbon.word.btnAiAutofill.tip", L"กรอกช่องว่างในเอกสาร"},
    {L"ribbon.word.btnAiChat", L"แชต AI"},
    {L"ribbon.word.btnAiChat.tip", L"ถามผู้ช่วยเกี่ยวกับเอกสารนี้"},
    {L"ribbon.word.btnDeleteBlankLines", L"ลบบรรทัดว่าง"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"ลบบรรทัดว่างในเอกสาร"},
    {L"ribbon.word.btnImageToWord", L"ภาพเป็นข้อความ"},
    {L"ribbon.word.btnImageToWord.tip", L"แปลงรูปภาพเป็นข้อความที่แก้ไขได้"},
    {L"ribbon.word.btnTranslateFullDoc", L"ทั้งเอกสาร"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"แปลทั้งเอกสาร"},
    {L"settings.body", L"ริบบอนจะอัปเดตทันที ส่วนหน้าต่าง Office อื่นที่เปิดอยู่แล้วจะเปลี่ยนตามเมื่อโหลดริบบอนครั้งถัดไป"},
    {L"settings.cancel", L"ยกเลิก"},
    {L"settings.ok", L"ตกลง"},
    {L"settings.title", L"ภาษาที่แสดง"},
    {L"settings.writeFailed", L"ไม่สามารถบันทึกการตั้งค่าภาษาได้ โปรดตรวจสอบว่าคุณสามารถเขียนไฟล์กำหนดค่าของผู้ใช้ได้"},
};

}  // namespace

CatalogRows CatalogTh() {
  return kRows;
}

}  // namespace qv
