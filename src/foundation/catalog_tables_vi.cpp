#include "foundation/catalog_tables.h"
#include "foundation/support_contact.h"

namespace qv {
namespace {

constexpr CatalogEntry kRows[kCatalogKeyCount] = {
    {L"blank.excel.deleted", L"Đã xóa {count} hàng trống."},
    {L"blank.excel.failed", L"\nKhông xóa được {count} hàng (trang tính có thể đang được bảo vệ)."},
    {L"blank.excel.foundFailed",
     L"Đã tìm thấy {count} hàng trống nhưng không xóa được hàng nào ({failed} hàng bị lỗi).\n\n"
     L"Hãy đảm bảo rằng trang tính không được bảo vệ."},
    {L"blank.excel.none", L"Không tìm thấy hàng trống nào."},
    {L"blank.excel.noneHint",
     L"\n\nTrong phạm vi đã dùng, một hàng chỉ bị xóa khi mọi ô đều trống và không có công thức. Nếu chọn "
     L"nhiều hàng, chỉ các hàng đó được quét. Nếu chỉ chọn một ô hoặc một hàng, toàn bộ phạm vi đã dùng sẽ "
     L"được quét."},
    {L"blank.excel.prompt", L"Đã tìm thấy {count} hàng trống. Bạn có muốn xóa không?"},
    {L"blank.excel.title", L"Xóa hàng trống"},
    {L"blank.word.deleted", L"Đã xóa {count} dòng trống."},
    {L"blank.word.failed", L"\nKhông xóa được {count} dòng (tài liệu có thể đang được bảo vệ)."},
    {L"blank.word.foundFailed",
     L"Đã tìm thấy {count} dòng trống nhưng không xóa được dòng nào ({failed} dòng bị lỗi).\n\n"
     L"Hãy đảm bảo rằng tài liệu không được bảo vệ."},
    {L"blank.word.kept",
     L"\n{count} dòng được giữ lại vì tài liệu cần đến (ví dụ: trước bảng hoặc dấu ngắt phần)."},
    {L"blank.word.none", L"Không tìm thấy dòng trống nào."},
    {L"blank.word.noneHint",
     L"\n\nMột dòng chỉ bị xóa khi đoạn văn của dòng đó không có văn bản, hình ảnh hoặc dấu ngắt. Nếu có "
     L"vùng chọn, chỉ các đoạn văn được chọn mới được quét. Nếu không có vùng chọn, toàn bộ tài liệu sẽ "
     L"được quét."},
    {L"blank.word.prompt", L"Đã tìm thấy {count} dòng trống. Bạn có muốn xóa không?"},
    {L"blank.word.title", L"Xóa dòng trống"},
    {L"msg.browserFailed", L"Không thể mở trình duyệt. Hãy kiểm tra trình duyệt mặc định của hệ thống."},
    {L"msg.createPaneFailed", L"Không thể tạo ngăn tác vụ.\nHRESULT: {hr}"},
    {L"msg.hostNotReady.excel", L"Excel chưa sẵn sàng. Hãy khởi động lại Excel rồi thử lại."},
    {L"msg.hostNotReady.ppt", L"PowerPoint chưa sẵn sàng. Hãy khởi động lại PowerPoint rồi thử lại."},
    {L"msg.hostNotReady.word", L"Word chưa sẵn sàng. Hãy khởi động lại Word rồi thử lại."},
    {L"msg.noWindow.excel", L"Cửa sổ Excel hiện tại không khả dụng.\nHãy mở một sổ làm việc rồi thử lại."},
    {L"msg.noWindow.ppt",
     L"Cửa sổ PowerPoint hiện tại không khả dụng.\n"
     L"Hãy mở một bản trình bày rồi thử lại."},
    {L"msg.noWindow.word", L"Cửa sổ Word hiện tại không khả dụng.\nHãy mở một tài liệu rồi thử lại."},
    {L"msg.paneFactory.excel", L"Không thể tạo ngăn tác vụ.\nHãy khởi động lại Excel rồi thử lại."},
    {L"msg.paneFactory.ppt", L"Không thể tạo ngăn tác vụ.\nHãy khởi động lại PowerPoint rồi thử lại."},
    {L"msg.paneFactory.word", L"Không thể tạo ngăn tác vụ.\nHãy khởi động lại Word rồi thử lại."},
    {L"msg.paneTitle", L"Trợ lý AI \u00B7 quorvantis.example"},
    {L"msg.title", L"Trợ lý AI"},
    {L"msg.webview2.body",
     L"Không thể mở thanh bên vì thành phần trình duyệt không khởi động được.\n\n"
     L"Hãy kiểm tra xem ổ đĩa C: có bị đầy không, giải phóng dung lượng rồi mở lại thanh bên.\n\n"
     L"Nếu vẫn không được, hãy liên hệ bộ phận hỗ trợ: " QV_SUPPORT_CONTACT L"\n"
     L"Khi bạn đóng thông báo này, thông tin liên hệ đó sẽ được sao chép vào bảng tạm."},
    {L"msg.welcome.body",
     L"Trợ lý AI đã được cài đặt. Bạn có muốn mở và đăng nhập ngay bây giờ không?\n\n"
     L"Bạn cũng có thể mở tab “Trợ lý AI” trên dải băng sau này."},
    {L"ribbon.btnAccount", L"Tài khoản"},
    {L"ribbon.btnAccount.tip", L"Đăng nhập và xem gói của bạn"},
    {L"ribbon.btnGlossary", L"Thuật ngữ"},
    {L"ribbon.btnGlossary.tip", L"Các thuật ngữ được dịch theo cách cố định"},
    {L"ribbon.btnGrammar", L"Ngữ pháp"},
    {L"ribbon.btnGrammar.tip", L"Kiểm tra và cải thiện văn bản đã chọn"},
    {L"ribbon.btnImageTranslate", L"Dịch hình ảnh"},
    {L"ribbon.btnImageTranslate.tip", L"Dịch văn bản trong hình ảnh"},
    {L"ribbon.btnInstruction", L"Chỉ dẫn"},
    {L"ribbon.btnInstruction.tip", L"Chỉ dẫn dịch của riêng bạn"},
    {L"ribbon.btnPdfTranslate", L"Dịch PDF"},
    {L"ribbon.btnPdfTranslate.tip", L"Dịch tệp PDF trong trình duyệt"},
    {L"ribbon.btnQuickTranslate", L"Dịch nhanh"},
    {L"ribbon.btnQuickTranslate.tip", L"Dịch từ nằm dưới con trỏ"},
    {L"ribbon.btnSettings", L"Cài đặt"},
    {L"ribbon.btnSettings.tip", L"Ngôn ngữ hiển thị"},
    {L"ribbon.btnSupport", L"Hỗ trợ"},
    {L"ribbon.btnSupport.tip", L"Nhận trợ giúp"},
    {L"ribbon.btnTranslateSelection", L"Vùng chọn"},
    {L"ribbon.btnTranslateSelection.tip", L"Dịch vùng chọn hiện tại"},
    {L"ribbon.excel.btnAiAgents", L"Tác nhân lập trình"},
    {L"ribbon.excel.btnAiAgents.tip", L"Các tác nhân lập trình"},
    {L"ribbon.excel.btnAiChat", L"Trò chuyện AI"},
    {L"ribbon.excel.btnAiChat.tip", L"Hỏi trợ lý về sổ làm việc này"},
    {L"ribbon.excel.btnDeleteBlankRows", L"Xóa hàng trống"},
    {L"ribbon.excel.btnDeleteBlankRows.tip", L"Xóa các hàng trống của trang tính"},
    {L"ribbon.excel.btnImageToTable", L"Ảnh thành bảng"},
    {L"ribbon.excel.btnImageToTable.tip", L"Chuyển hình ảnh của bảng thành các ô"},
    {L"ribbon.excel.btnPdfToTable", L"PDF thành bảng"},
    {L"ribbon.excel.btnPdfToTable.tip", L"Chuyển các bảng trong tệp PDF thành các ô"},
    {L"ribbon.excel.btnTranslateFullDoc", L"Toàn bộ trang tính"},
    {L"ribbon.excel.btnTranslateFullDoc.tip", L"Dịch toàn bộ trang tính"},
    {L"ribbon.grpAccount", L"Tài khoản"},
    {L"ribbon.grpDialog", L"Trợ lý"},
    {L"ribbon.grpDocTools", L"Công cụ"},
    {L"ribbon.grpTerminology", L"Thuật ngữ"},
    {L"ribbon.grpTranslate", L"Dịch"},
    {L"ribbon.tabQuorvantis", L"Trợ lý AI"},
    {L"ribbon.ppt.btnTranslateCurrentSlide", L"Trang chiếu hiện tại"},
    {L"ribbon.ppt.btnTranslateCurrentSlide.tip", L"Dịch trang chiếu hiện tại"},
    {L"ribbon.ppt.btnTranslateFullDoc", L"Toàn bộ bản trình bày"},
    {L"ribbon.ppt.btnTranslateFullDoc.tip", L"Dịch toàn bộ bản trình bày"},
    {L"ribbon.word.btnAiAutofill", L"Tự động điền"},
    {L"ribbon.word.btnAiAutofill.tip", L"Điền vào chỗ trống trong tài liệu"},
    {L"ribbon.word.btnAiChat", L"Trò chuyện AI"},
    {L"ribbon.word.btnAiChat.tip", L"Hỏi trợ lý về tài liệu này"},
    {L"ribbon.word.btnDeleteBlankLines", L"Xóa dòng trống"},
    {L"ribbon.word.btnDeleteBlankLines.tip", L"Xóa các dòng trống trong tài liệu"},
    {L"ribbon.word.btnImageToWord", L"Ảnh thành văn bản"},
    {L"ribbon.word.btnImageToWord.tip", L"Chuyển hình ảnh thành văn bản có thể chỉnh sửa"},
    {L"ribbon.word.btnTranslateFullDoc", L"Toàn bộ tài liệu"},
    {L"ribbon.word.btnTranslateFullDoc.tip", L"Dịch toàn bộ tài liệu"},
    {L"settings.body",
     L"Dải băng được cập nhật ngay. Các cửa sổ Office khác đang mở sẽ áp dụng thay đổi này vào lần tải dải "
     L"băng tiếp theo."},
    {L"settings.cancel", L"Hủy"},
    {L"settings.ok", L"OK"},
    {L"settings.title", L"Ngôn ngữ hiển thị"},
    {L"settings.writeFailed",
     L"Không thể lưu cài đặt ngôn ngữ. Hãy kiểm tra xem bạn có quyền ghi vào tệp cấu hình người dùng không."},
};

}  // namespace

CatalogRows CatalogVi() {
  return kRows;
}

}  // namespace qv
