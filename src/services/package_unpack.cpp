#include "services/package_unpack.h"

// The shell's interfaces need the base types first.
#include <windows.h>

#include <shldisp.h>

#include <cstdint>
#include <optional>

#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "foundation/variant.h"
#include "services/agent_places.h"
#include "services/child_process.h"
#include "services/find_executable.h"
#include "services/package_fetch.h"

namespace qv {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kTarTime = std::chrono::minutes(10);
/// How long a file must keep its size to count as written.
constexpr auto kAtRest = std::chrono::seconds(2);
constexpr DWORD kLookEveryMs = 100;

/// {13709620-C279-11CE-A49E-444553540000}, the shell's automation object.
constexpr GUID kShellApplication = {
    0x13709620, 0xC279, 0x11CE, {0xA4, 0x9E, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};
/// FOF_SILENT, FOF_NOCONFIRMATION, FOF_NOCONFIRMMKDIR and FOF_NOERRORUI: nothing is shown or asked.
constexpr long kCopyOptions = 0x4 | 0x10 | 0x200 | 0x400;

/// A single-threaded apartment for as long as this lives; one of the other kind that is there is used.
class Apartment {
 public:
  Apartment() : hr_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() {
    if (SUCCEEDED(hr_)) CoUninitialize();
  }

 private:
  HRESULT hr_;
};

ComPtr<Folder> OpenFolder(IShellDispatch* shell, const std::wstring& path) {
  ComPtr<Folder> folder;
  const Variant name(path);
  return SUCCEEDED(shell->NameSpace(name.Get(), &folder)) ? folder : nullptr;
}

bool StartShellCopy(const std::wstring& package, const std::wstring& directory) {
  ComPtr<IShellDispatch> shell;
  if (FAILED(CoCreateInstance(kShellApplication, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IShellDispatch),
                              reinterpret_cast<void**>(shell.GetAddressOf())))) {
    return false;
  }
  const ComPtr<Folder> source = OpenFolder(shell.Get(), package);
  const ComPtr<Folder> target = OpenFolder(shell.Get(), directory);
  ComPtr<FolderItems> items;
  if (source == nullptr || target == nullptr || FAILED(source->Items(&items)) || items == nullptr)
    return false;
  return SUCCEEDED(target->CopyHere(Variant(items.Get()).Get(), Variant(kCopyOptions).Get()));
}

/// The size of a file that nobody writes any more; nothing while it is missing or being written.
std::optional<std::uint64_t> SizeAtRest(const std::wstring& path) {
  const UniqueFile file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  LARGE_INTEGER size{};
  if (!file || !GetFileSizeEx(file.Get(), &size) || size.QuadPart == 0) return std::nullopt;
  return static_cast<std::uint64_t>(size.QuadPart);
}

/// The shell copies with the help of this thread's messages.
void PumpFor(DWORD milliseconds) {
  MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds, QS_ALLINPUT);
  for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);)
    DispatchMessageW(&message);
}

bool WaitUntilAtRest(const std::function<std::wstring()>& locate, std::chrono::milliseconds patience) {
  const auto deadline = Clock::now() + patience;
  std::optional<std::uint64_t> size;
  auto since = Clock::now();
  while (Clock::now() < deadline) {
    const auto now = SizeAtRest(locate());
    if (now != size || !now) {
      size = now;
      since = Clock::now();
    } else if (Clock::now() - since >= kAtRest) {
      return true;
    }
    PumpFor(kLookEveryMs);
  }
  return false;
}

}  // namespace

bool ExtractWithTar(const std::wstring& package, const std::wstring& directory) {
  std::wstring tar = SystemDirectory() + L"\\tar.exe";
  if (!IsExistingFile(tar)) tar = FindExecutable(L"tar.exe");
  if (tar.empty()) {
    InstallerLog(L"tar extract failed: tar.exe not found");
    return false;
  }
  const ChildRun run =
      RunCaptured(tar, Concat(L'"', tar, L"\" -xf \"", package, L"\" -C \"", directory, L'"'),
                  {.time = kTarTime, .keepErrors = true});
  InstallerLog(Concat(run.Succeeded() ? L"tar extract ok: " : L"tar extract failed: ", FromUtf8(run.output)));
  return run.Succeeded();
}

bool ExtractWithShell(const std::wstring& package, const std::wstring& directory,
                      const std::function<std::wstring()>& locate, std::chrono::milliseconds patience) {
  const Apartment apartment;
  return StartShellCopy(package, directory) && WaitUntilAtRest(locate, patience);
}

}  // namespace qv
