#include "webview2/chromium/browser_keeper.h"

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <map>

#include "foundation/text.h"
#include "webview2/chromium/unix_path.h"
#include "webview2/this_library.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kScript[] = L"launch_browser.sh";
constexpr DWORD kScriptLimitMs = 5'000;
constexpr std::size_t kBrowserPathLength = 54;  // "/devtools/browser/" and a UUID

std::wstring Quoted(const std::wstring& argument) {
  return L"\"" + argument + L"\"";
}

}  // namespace

std::shared_ptr<BrowserKeeper> BrowserKeeper::ForOptions(const BrowserOptions& options) {
  static std::mutex mutex;
  static std::map<BrowserOptions, std::shared_ptr<BrowserKeeper>> keepers;
  const std::scoped_lock lock(mutex);
  auto& keeper = keepers[options];
  if (!keeper) keeper = std::make_shared<BrowserKeeper>(options);
  return keeper;
}

unsigned BrowserKeeper::Start() {
  const std::scoped_lock lock(mutex_);
  if (!leash_ && !TakeLeash()) return 0;
  ++starts_;
  return Command("start " + std::to_string(starts_) + "\n") ? starts_ : 0;
}

void BrowserKeeper::Stop(unsigned number) {
  const std::scoped_lock lock(mutex_);
  if (leash_ && number == starts_) static_cast<void>(Command("stop\n"));
}

BrowserKeeper::Progress BrowserKeeper::Look(unsigned number, DevToolsAddress& address) const {
  const std::scoped_lock lock(mutex_);
  if (number != starts_ || HasMark(L"ended-", number)) return Progress::kEnded;
  // Until the script has come so far, the port is that of the browser before.
  if (!HasMark(L"started-", number)) return Progress::kStarting;
  std::ifstream file(std::filesystem::path(WindowsPathOf(root_) + L"\\profile\\DevToolsActivePort"));
  std::string path;
  if (!(file >> address.port >> path) || path.size() != kBrowserPathLength) return Progress::kStarting;
  address.path = Widen(path);
  return Progress::kListening;
}

bool BrowserKeeper::HasMark(const wchar_t* name, unsigned number) const {
  const std::wstring path = Concat(WindowsPathOf(root_), L"\\", std::wstring_view(name), number);
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool BrowserKeeper::TakeLeash() {
  if (!MakeRoot() || !RunScript()) return false;
  const std::wstring path = WindowsPathOf(root_) + L"\\leash";
  const ULONGLONG deadline = GetTickCount64() + kScriptLimitMs;
  while (!leash_ && GetTickCount64() < deadline) {
    leash_.Reset(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                             OPEN_EXISTING, 0, nullptr));
    if (!leash_) Sleep(5);
  }
  return static_cast<bool>(leash_);
}

bool BrowserKeeper::MakeRoot() {
  static std::atomic<unsigned> count{0};
  const std::wstring folder = EnvironmentText(L"TMPDIR").value_or(L"/tmp");
  root_ =
      Concat(folder, L"/quorvantis-browser-", GetCurrentProcessId(), L"-", GetTickCount64(), L"-", ++count);
  return CreateDirectoryW(WindowsPathOf(root_).c_str(), nullptr) != FALSE;
}

bool BrowserKeeper::RunScript() const {
  std::wstring line =
      Quoted(ThisLibraryFolder() + L"\\" + kScript) + L" " + Quoted(root_) + L" " + Quoted(options_.program);
  if (!options_.trustedKeys.empty())
    line += L" " + Quoted(L"--ignore-certificate-errors-spki-list=" + options_.trustedKeys);
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  // Wine gives no handle to a Unix process, and its number means nothing.
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
    return false;
  const UniqueKernelHandle processHandle(process.hProcess);
  const UniqueKernelHandle threadHandle(process.hThread);
  return true;
}

bool BrowserKeeper::Command(const std::string& line) {
  DWORD written = 0;
  return WriteFile(leash_.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr) != FALSE &&
         written == line.size();
}

}  // namespace qv::devhost
