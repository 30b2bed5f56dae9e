#include "panel/web_view_environment.h"

#include <shlobj.h>

#include <array>

#include "foundation/file_io.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

constexpr wchar_t kLoaderName[] = L"\\WebView2Loader.dll";
constexpr wchar_t kRuntimeLibrary[] = L"\\EBWebView\\x64\\EmbeddedBrowserWebView.dll";

// The updater keeps one key a release channel, for all users or for one:
// https://learn.microsoft.com/microsoft-edge/webview2/concepts/distribution
constexpr const wchar_t* kRuntimeKeys[] = {
    L"Software\\Microsoft\\EdgeUpdate\\ClientState\\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}",
    L"Software\\Microsoft\\EdgeUpdate\\ClientState\\{2CD8A007-E189-409D-A2C8-9AF4EF3C72AA}",
    L"Software\\Microsoft\\EdgeUpdate\\ClientState\\{0D50BFEC-CD6A-4F9A-964C-C7416E3ACB10}",
    L"Software\\Microsoft\\EdgeUpdate\\ClientState\\{65C35B14-6C1D-4122-AC46-7148CC9D6497}",
};

template <typename Function>
Function Export(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

bool EnsureFolder(const std::wstring& path) {
  return CreateDirectoryW(path.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
}

std::wstring InstalledRuntimeFolder(HKEY root, const wchar_t* keyName) {
  UniqueRegistryKey key;
  if (RegOpenKeyExW(root, keyName, 0, KEY_READ | KEY_WOW64_32KEY, key.Put()) != ERROR_SUCCESS) return {};
  std::array<wchar_t, MAX_PATH> folder{};
  DWORD bytes = sizeof(folder);
  const LSTATUS status =
      RegGetValueW(key.Get(), nullptr, L"EBWebView", RRF_RT_REG_SZ, nullptr, folder.data(), &bytes);
  return status == ERROR_SUCCESS ? std::wstring(folder.data()) : std::wstring();
}

HMODULE LoadInstalledRuntime() {
  for (const wchar_t* keyName : kRuntimeKeys) {
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      const std::wstring folder = InstalledRuntimeFolder(root, keyName);
      if (folder.empty()) continue;
      const std::wstring path = folder + kRuntimeLibrary;
      if (HMODULE library = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
        return library;
      }
    }
  }
  return nullptr;
}

HMODULE LoadLoader() {
  const std::wstring folder = GetModuleDirectory();
  // An absolute path: a search would let the host's folder or the current one supply the library.
  return folder.empty() ? nullptr : LoadLibraryW((folder + kLoaderName).c_str());
}

}  // namespace

std::wstring WebViewUserDataDir() {
  const std::wstring local = ShellFolder(CSIDL_LOCAL_APPDATA);
  if (local.empty()) return {};
  const std::wstring product = local + L"\\Quorvantis";
  const std::wstring profile = product + L"\\WebView2";
  return EnsureFolder(product) && EnsureFolder(profile) ? profile : std::wstring();
}

HRESULT CreateWebViewEnvironment(const std::wstring& userDataDir,
                                 ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler) {
  if (HMODULE loader = LoadLoader()) {
    const auto create = Export<CreateCoreWebView2EnvironmentWithOptionsFunction>(
        loader, "CreateCoreWebView2EnvironmentWithOptions");
    if (create == nullptr) return HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
    return create(nullptr, userDataDir.c_str(), nullptr, handler);
  }
  HMODULE runtime = LoadInstalledRuntime();
  if (runtime == nullptr) return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
  const auto create = Export<CreateWebViewEnvironmentWithOptionsInternalFunction>(
      runtime, "CreateWebViewEnvironmentWithOptionsInternal");
  if (create == nullptr) return HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
  return create(true, WebView2RuntimeType::kInstalled, userDataDir.c_str(), nullptr, handler);
}

}  // namespace qv
