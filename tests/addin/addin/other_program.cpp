#include "other_program.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kTimeoutMs = 120'000;
constexpr wchar_t kDesktopKey[] = L"Control Panel\\Desktop";
constexpr wchar_t kDpiValue[] = L"LogPixels";

/// The DPI of processes that start meanwhile.
class DpiSetting {
 public:
  explicit DpiSetting(DWORD dpi) {
    DWORD size = sizeof(before_);
    hadOne_ = RegGetValueW(HKEY_CURRENT_USER, kDesktopKey, kDpiValue, RRF_RT_REG_DWORD, nullptr, &before_,
                           &size) == ERROR_SUCCESS;
    Write(dpi);
  }
  DpiSetting(const DpiSetting&) = delete;
  DpiSetting& operator=(const DpiSetting&) = delete;
  ~DpiSetting() {
    if (hadOne_) {
      Write(before_);
    } else {
      RegDeleteKeyValueW(HKEY_CURRENT_USER, kDesktopKey, kDpiValue);
    }
  }

 private:
  static void Write(DWORD dpi) {
    EXPECT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kDesktopKey, kDpiValue, REG_DWORD, &dpi, sizeof(dpi)),
              ERROR_SUCCESS);
  }

  DWORD before_ = 0;
  bool hadOne_ = false;
};

fs::path ThisProgram() {
  std::array<wchar_t, MAX_PATH> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  return path.data();
}

/// Whether the program ended in time.
bool Run(const fs::path& program, const std::wstring& filter, const fs::path& output) {
  SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
  const UniqueFile file(CreateFileW(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = startup.hStdError = file.Get();
  std::wstring command = Concat(L"\"", program.native(), L"\" --gtest_filter=", filter);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                      &process))
    return false;
  const UniqueKernelHandle thread(process.hThread);
  const UniqueKernelHandle handle(process.hProcess);
  if (WaitForSingleObject(handle.Get(), kTimeoutMs) == WAIT_OBJECT_0) return true;
  TerminateProcess(handle.Get(), 1);
  return false;
}

}  // namespace

testing::AssertionResult PassesElsewhere(const std::wstring& program, int dpi, const std::wstring& filter) {
  const fs::path self = ThisProgram();
  const fs::path copy = self.parent_path() / program;
  const fs::path output = fs::temp_directory_path() / L"quorvantis_other_program.txt";
  // MinGW's copy refuses to overwrite whatever it is told, and the host's start leaves a program of that
  // name.
  if (copy != self) fs::remove(copy);
  if (copy != self) fs::copy_file(self, copy);
  bool ended = false;
  {
    const DpiSetting setting(static_cast<DWORD>(dpi));
    ended = Run(copy, filter, output);
  }
  std::ifstream stream(output);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  stream.close();
  fs::remove(output);
  if (copy != self) fs::remove(copy);
  // A crash under Wine may look like success: the closing line tells.
  const bool passed = text.find("[  PASSED  ] ") != std::string::npos &&
                      text.find("[  PASSED  ] 0") == std::string::npos &&
                      text.find("[  FAILED  ]") == std::string::npos;
  if (ended && passed) return testing::AssertionSuccess();
  // Indented, or the closing lines would be taken for this program's own.
  return testing::AssertionFailure() << ToUtf8(program) << " at " << dpi << " DPI:\n  "
                                     << ToUtf8(ReplaceAll(FromUtf8(text), L"\n", L"\n  "));
}

}  // namespace qv
