#include "panel/web_view_failure.h"

#include <atomic>
#include <string>
#include <utility>

#include "foundation/catalog.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "foundation/support_contact.h"
#include "panel/clipboard.h"
#include "panel/page_scripts.h"

namespace qv {
namespace {

void TellUser(HWND paneWindow) {
  const HWND host = GetAncestor(paneWindow, GA_ROOT);
  const std::wstring body = GetCatalogText(L"msg.webview2.body");
  const std::wstring title = GetCatalogText(L"msg.title");
  // The pane may be gone when the box closes; only what is local is used from here on.
  MessageBoxW(host, body.c_str(), title.c_str(), MB_ICONWARNING | MB_SETFOREGROUND);
  CopyTextToClipboard(kSupportContact);
}

void TellOncePerProcess(HWND paneWindow) {
  static std::atomic<bool> told{false};
  if (!told.exchange(true)) TellUser(paneWindow);
}

void TellOncePerLoss(HWND paneWindow) {
  // The other panes' tasks run while the box is open.
  static bool open = false;
  if (std::exchange(open, true)) return;
  TellUser(paneWindow);
  open = false;
}

}  // namespace

void ShowWebView2Failure(const std::shared_ptr<PaneContext>& context, const wchar_t* step, HRESULT hr) {
  LogPaneDiagnostic(context->LogIdentity(), WebViewFailureText(step, hr), hr);
  ReportWebViewInitFailure(step != nullptr ? step : L"init", hr);
  // Without a window the pane is closing, and nobody waits for an explanation.
  static_cast<void>(context->Tasks().PostFunction([context] { TellOncePerProcess(context->Window()); }));
}

void ShowBrowserLoss(const std::shared_ptr<PaneContext>& context) {
  LogPaneDiagnostic(context->LogIdentity(), L"ProcessFailed browser",
                    HRESULT_FROM_WIN32(ERROR_PROCESS_ABORTED));
  static_cast<void>(context->Tasks().PostFunction([context] { TellOncePerLoss(context->Window()); }));
}

}  // namespace qv
