#include "webview2/chromium/browser_options.h"

#include "webview2/chromium/unix_path.h"

namespace qv::devhost {

std::optional<BrowserOptions> WantedBrowser(const std::wstring& userDataFolder) {
  if (EnvironmentText(L"QV_DEVHOST_BROWSER") != L"chromium") return std::nullopt;
  return BrowserOptions{userDataFolder,
                        EnvironmentText(L"QV_DEVHOST_CHROMIUM").value_or(L"/usr/lib/chromium/chromium"),
                        EnvironmentText(L"QV_DEVHOST_BROWSER_SPKI").value_or(L"")};
}

}  // namespace qv::devhost
