#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"عدد الصفوف الفارغة المحذوفة: {count}"},
    {L"blank.excel.failed", L"\nعدد الصفوف التي تعذّر حذفها: {count} (قد تكون الورقة محمية)"},
    {L"blank.excel.foundFailed",
     L"عدد الصفوف الفارغة الموجودة: {count}. لم يُحذف أي منها (عدد الصفوف التي تعذّر حذفها: {failed}).\n\n"
     L"تأكد من أن الورقة غير محمية."},
    {L"blank.excel.none", L"لم يتم العثور على صفوف فارغة."},
    {L"blank.excel.noneHint",
     L"\n\nداخل النطاق المستخدم، لا يُحذف الصف إلا إذا كانت كل خلاياه فارغة ولا تحتوي على صيغ. عند تحديد "
     L"عدة صفوف، يقتصر الفحص على تلك الصفوف. وعند تحديد خلية واحدة أو صف واحد، يشمل الفحص النطاق المستخدم "
     L"بأكمله."},
    {L"blank.excel.prompt", L"عدد الصفوف الفارغة الموجودة: {count}. هل تريد حذفها؟"},
    {L"blank.excel.title", L"حذف الصفوف الفارغة"},
    {L"blank.word.deleted", L"عدد الأسطر الفارغة المحذوفة: {count}"},
    {L"blank.word.failed", L"\nعدد الأسطر التي تعذّر حذفها: {count} (قد يكون المستند محميًا)"},
    {L"blank.word.foundFailed",
     L"عدد الأسطر الفارغة الموجودة: {count}. لم يُحذف أي منها (عدد الأسطر التي تعذّر حذفها: {failed}).\n\n"
     L"تأكد من أن المستند غير محمي."},
    {L"blank.word.kept",
     L"\nعدد الأسطر التي تم الاحتفاظ بها: {count} (يحتاج إليها المستند، مثلاً قبل جدول أو فاصل مقطعي)"},
    {L"blank.word.none", L"لم يتم العثور على أسطر فارغة."},
    {L"blank.word.noneHint",
     L"\n\nلا يُحذف السطر إلا إذا كانت فقرته لا تحتوي على نص أو صورة أو فاصل. عند وجود تحديد، يقتصر الفحص "
     L"على الفقرات المحددة. وعند عدم وجود تحديد، يشمل الفحص المستند بأكمله."},
    {L"blank.word.prompt", L"عدد الأسطر الفارغة الموجودة: {count}. هل تريد حذفها؟"},
    {L"blank.word.title", L"حذف الأسطر الفارغة"},
    {L"msg.browserFailed", L"تعذّر فتح المستعرض. تحقق من المستعرض الافتراضي في النظام."},
    {L"msg.createPaneFailed", L"تعذّر إنشاء جزء المهام.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel", L"برنامج Excel غير جاهز. أعد تشغيل Excel ثم حاول مرة أخرى."},
    {L"msg.hostNotReady.ppt", L"برنامج PowerPoint غير جاهز. أعد تشغيل PowerPoint ثم حاول مرة أخرى."},
    {L"msg.hostNotReady.word", L"برنامج Word غير جاهز. أعد تشغيل Word ثم حاول مرة أخرى."},
    {L"msg.noWindow.excel", L"نافذة Excel الحالية غير متوفرة.\nافتح مصنفًا ثم حاول مرة أخرى."},
    {L"msg.noWindow.ppt", L"نافذة PowerPoint الحالية غير متوفرة.\nافتح عرضًا تقديميًا ثم حاول مرة أخرى."},
    {L"msg.noWindow.word", L"نافذة Word الحالية غير متوفرة.\nافتح مستندًا ثم حاول مرة أخرى."},
    {L"msg.paneFactory.excel", L"تعذّر إنشاء جزء المهام.\nأعد تشغيل Excel ثم حاول مرة أخرى."},
    {L"msg.paneFactory.ppt", L"تعذّر إنشاء جزء المهام.\nأعد تشغيل PowerPoint ثم حاول مرة أخرى."},
    {L"msg.paneFactory.word", L"تعذّر إنشاء جزء المهام.\nأعد تشغيل Word ثم حاول مرة أخرى."},
    {L"msg.paneTitle", L"مساعد الذكاء الاصطناعي \u00B7 quorvantis.example"},
    {L"msg.title", L"مساعد الذكاء الاصطناعي"},
    {L"msg.webview2.body",
     L"لا يمكن فتح الشريط الجانبي لتعذّر بدء تشغيل مكوّن المستعرض الخاص به.\n\n"
     L"تحقق مما إذا كان محرك الأقراص C ممتلئًا، وحرّر بعض المساحة، ثم افتح الشريط الجانبي مرة أخرى.\n\n"
     L"إذا استمرت المشكلة، فاتصل بالدعم: " QV_SUPPORT_CONTACT L"\n"
     L"عند إغلاق هذه الرسالة، يتم نسخ هذا العنوان إلى الحافظة."},
    {L"msg.welcome.body",
     L"تم تثبيت مساعد الذكاء الاصطناعي. هل تريد فتحه وتسجيل الدخول الآن؟\n\n"
     L"يمكنك أيضًا فتح علامة التبويب «مساعد الذكاء الاصطناعي» في الشريط لاحقًا."},
    {L"ribbon.btnAccount", L"الحساب"},
    {L"ribbon.btnAccount.tip", L"تسجيل الدخول وعرض خطتك"},
    {L"ribbon.btnGlossary", L"مسرد المصطلحات"},
    {L"ribbon.btnGlossary.tip", L"مصطلحات ذات ترجمة ثابتة"},
    {L"ribbon.btnGrammar", L"التدقيق النحوي"},
    {L"ribbon.btnGrammar.tip", L"التحقق من النص المحدد وتحسينه"},
    {L"ribbon.btnImageTranslate", L"الصور"},
    {L"ribbon.btnImageTranslate.tip", L"ترجمة النص الموجود في الصور"},
    {L"ribbon.btnInstruction", L"التعليمات"},
    {L"ribbon.btnInstruction.tip", L"تعليمات الترجمة الخاصة بك"},
    {L"ribbon.btnPdfTranslate", L"ترجمة PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"ترجمة ملف PDF في المستعرض"},
    {L"ribbon.btnQuickTranslate", L"ترجمة سريعة"},
    {L"ribbon.btnQuickTranslate.tip", L"ترجمة الكلمة الموجودة تحت المؤشر"},
    {L"ribbon.btnSettings", L"الإعدادات"},
    {L"ribbon.btnSettings.tip", L"لغة العرض"},
    {L"ribbon.btnSupport", L"الدعم"},
    {L"ribbon.btnSupport.tip", L"الحصول على المساعدة"},
    {L"ribbon.btnTranslateSelection", L"التحديد"},
    {L"ribbon.btnTranslateSelection.tip", L"ترجمة التحديد الحالي"},
    {L"ribbon.excel.btnAiAgents", L"وكيل البرمجة"},
    {L"ribbon.excel.btnAiAgents.tip", L"وكلاء البرمجة"},
    {L"ribbon.excel.btnAiChat", L"دردشة ذكية"},
    {L"ribbon.excel.btnAiChat.tip", L"طرح سؤال على المساعد حول هذا المصنف"},
    {L"ribbon.excel.btnDeleteBlankRows", L"حذف الصفوف الفارغة"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"حذف الصفوف الفارغة من الورقة"},
    {L"ribbon.excel.btnImageToTable", L"من صورة إلى جدول"},
    {L"ribbon.excel.btnImageToTable.tip", L"تحويل صورة جدول إلى خلايا"},
    {L"ribbon.excel.btnPdfToTable", L"من PDF إلى جدول"},
    {L"ribbon.excel.btnPdfToTable.tip", L"تحويل جداول ملف PDF إلى خلايا"},
    {L"ribbon.excel.btnTranslateFullDoc", L"الورقة بأكملها"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"ترجمة الورقة بأكملها"},
    {L"ribbon.grpAccount", L"الحساب"},
    {L"ribbon.grpDialog", L"المساعد"},
    {L"ribbon.grpDocTools", L"الأدوات"},
    {L"ribbon.grpTerminology", L"مسرد المصطلحات"},
    {L"ribbon.grpTranslate", L"الترجمة"},
    {L"ribbon.tabQuorvantis", L"مساعد الذكاء الاصطناعي"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"الشريحة الحالية"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"ترجمة الشريحة الحالية"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"العرض التقديمي بأكمله"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"ترجمة العرض التقديمي بأكمله"},
    {L"ribbon.word.btnAiAutofill", L"تعبئة تلقائية"},
    {L"ribbon.word.btnAiAutofill.tip", L"تعبئة الفراغات في المستند"},
    {L"ribbon.word.btnAiChat", L"دردشة ذكية"},
    {L"ribbon.word.btnAiChat.tip", L"طرح سؤال على المساعد حول هذا المستند"},
    {L"ribbon.word.btnDeleteBlankLines", L"حذف الأسطر الفارغة"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"حذف الأسطر الفارغة من المستند"},
    {L"ribbon.word.btnImageToWord", L"من صورة إلى نص"},
    {L"ribbon.word.btnImageToWord.tip", L"تحويل صورة إلى نص قابل للتحرير"},
    {L"ribbon.word.btnTranslateFullDoc", L"المستند بأكمله"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"ترجمة المستند بأكمله"},
    {L"settings.body",
     L"يتم تحديث الشريط على الفور. أما نوافذ Office الأخرى المفتوحة حاليًا فسيظهر فيها هذا التغيير عند "
     L"تحميل الشريط في المرة التالية."},
    {L"settings.cancel", L"إلغاء"},
    {L"settings.ok", L"موافق"},
    {L"settings.title", L"لغة العرض"},
    {L"settings.writeFailed", L"تعذّر حفظ إعداد اللغة. تأكد من إمكانية الكتابة إلى ملف تكوين المستخدم."},
};

}  // namespace

CatalogRows CatalogAr() {
  return kRows;
}

}  // namespace qv
