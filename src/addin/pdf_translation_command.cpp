#include "addin/pdf_translation_command.h"

#include <shellapi.h>

#include <string>

#include "addin/host_message.h"
#include "foundation/catalog.h"
#include "foundation/host_session.h"
#include "foundation/logging.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr wchar_t kPage[] = L"/panel/web/webtranslate.html?tool=pdftr";
/// ShellExecute answers with a number above this when it has succeeded.
constexpr INT_PTR kLastShellError = 32;

}  // namespace

void OpenPdfTranslation(HWND owner) {
  PaneLog(L"Excel PdfTranslateClicked\r\n");
  const std::wstring url = HostSession::Get().Endpoint().Origin() + kPage;
  const auto code =
      reinterpret_cast<INT_PTR>(ShellExecuteW(owner, L"open", url.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  if (code > kLastShellError) return;
  PaneLog(Concat(L"Excel PdfTranslate ShellExecute failed code=", code, L"\r\n"));
  ShowMessage(owner, GetCatalogText(L"msg.browserFailed"), MB_OK | MB_ICONWARNING);
}

}  // namespace qv
