#include <algorithm>
#include <array>
#include <cwchar>

#include "engines/common/com_guard.h"
#include "webview2/environment.h"
#include "webview2/put_value.h"
#include "webview2/recorder.h"
#include "webview2/task_text.h"

namespace {

using VersionParts = std::array<long, 4>;

/// "major.minor.build.patch", anything after a space (a channel name) ignored; missing parts are 0.
VersionParts ParseVersion(PCWSTR text) {
  VersionParts parts{};
  for (auto& part : parts) {
    wchar_t* end = nullptr;
    part = std::wcstol(text, &end, 10);
    if (end == text || *end != L'.') break;
    text = end + 1;
  }
  return parts;
}

}  // namespace

extern "C" {

HRESULT WINAPI CreateCoreWebView2EnvironmentWithOptions(
    PCWSTR, PCWSTR userDataFolder, ICoreWebView2EnvironmentOptions*,
    ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler) {
  return qv::devhost::GuardCom([&] { return qv::devhost::CreateEnvironment(userDataFolder, handler); });
}

HRESULT WINAPI GetAvailableCoreWebView2BrowserVersionString(PCWSTR, LPWSTR* versionInfo) {
  return qv::devhost::GuardCom(
      [&] { return qv::devhost::ReturnText(qv::devhost::kBrowserVersion, versionInfo); });
}

HRESULT WINAPI CompareBrowserVersions(PCWSTR version1, PCWSTR version2, int* result) {
  if (version1 == nullptr || version2 == nullptr || result == nullptr) return E_INVALIDARG;
  const auto left = ParseVersion(version1);
  const auto right = ParseVersion(version2);
  return qv::devhost::PutValue(result, left < right ? -1 : left > right ? 1 : 0);
}

qv::devhost::WebViewControl* WINAPI QvWebViewControl(std::uint32_t version) {
  return version == qv::devhost::kWebViewControlVersion ? &qv::devhost::Recorder::Get() : nullptr;
}

}  // extern "C"
