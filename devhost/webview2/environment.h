#pragma once

#include <memory>
#include <string>

#include "foundation/com_object.h"
#include "panel/webview2_interfaces.h"
#include "webview2/completion_queue.h"
#include "webview2/page_backend.h"

namespace qv::devhost {

/// What the stand-in says its version is.
inline constexpr wchar_t kBrowserVersion[] = L"120.0.0.0";

/// Makes controllers, each with its child window and web view.
class Environment final : public ComObject<ICoreWebView2Environment> {
 public:
  Environment(std::shared_ptr<CompletionQueue> queue, std::unique_ptr<PageSource> pages,
              std::wstring userDataFolder);

  HRESULT STDMETHODCALLTYPE CreateCoreWebView2Controller(
      HWND parentWindow,
      ICoreWebView2CreateCoreWebView2ControllerCompletedHandler* handler) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateWebResourceResponse(IStream*, int, LPCWSTR, LPCWSTR,
                                                      ICoreWebView2WebResourceResponse**) noexcept override;
  HRESULT STDMETHODCALLTYPE get_BrowserVersionString(LPWSTR* value) noexcept override;
  HRESULT STDMETHODCALLTYPE add_NewBrowserVersionAvailable(
      ICoreWebView2NewBrowserVersionAvailableEventHandler*, EventRegistrationToken*) noexcept override;
  HRESULT STDMETHODCALLTYPE remove_NewBrowserVersionAvailable(EventRegistrationToken) noexcept override;

 private:
  std::shared_ptr<CompletionQueue> queue_;
  std::unique_ptr<PageSource> pages_;
  std::wstring userDataFolder_;
};

/// Makes an environment later on the calling thread. An HRESULT that says why not when it cannot even begin.
[[nodiscard]] HRESULT CreateEnvironment(PCWSTR userDataFolder,
                                        ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler);

}  // namespace qv::devhost
