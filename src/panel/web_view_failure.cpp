#include "panel/web_view_failure.h"

#include <atomic>
#include <string>

#include "foundation/catalog.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "foundation/support_contact.h"
#include "panel/clipboard.h"
#include "panel/page_scripts.h"

namespace qv {
namespace {

void TellUserOnce(HWND paneWindow) {
  static std::atomic<bool> told{false};
  if (told.exchange(true)) return;
  const HWND host = GetAncestor(paneWindow, GA_ROOT);
  const std::wstring body = GetCatalogText(L"msg.webview2.body");
  const std::wstring title = GetCatalogText(L"msg.title");
  // The pane may be gone when the box closes; only what is local is used from here on.
  MessageBoxW(host, body.c_str(), title.c_str(), MB_ICONWARNING | MB_SETFOREGROUND);
  CopyTextToClipboard(kSupportContact);
}

}  // namespace

void ShowWebView2Failure(const std::shared_ptr<PaneContext>& context, const wchar_t* step, HRESULT hr) {
  LogPaneDiagnostic(context->LogIdentity(), WebViewFailureText(step, hr), hr);
  ReportWebViewInitFailure(step != nullptr ? step : L"init", hr);
  // Without a window the pane is closing, and nobody waits for an explanation.
  static_cast<void>(context->Tasks().PostFunction([context] { TellUserOnce(context->Window()); }));
}

}  // namespace qv
