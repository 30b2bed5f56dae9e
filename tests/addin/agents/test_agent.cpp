// Plays a coding agent. With "--version" it says which version it is, in the manner of QV_TEST_AGENT: "hang"
// stops in the middle of a line for a minute, "flood" goes on for 10 MB, "child" leaves a process behind that
// holds its output. Otherwise it writes what it sees, as UTF-8 lines, to the file that QV_TEST_AGENT_REPORT
// names, and ends.

#include <windows.h>

#include <array>
#include <string>
#include <string_view>

namespace {

constexpr DWORD kHangMs = 60'000;

std::wstring Variable(const wchar_t* name) {
  std::array<wchar_t, 4096> value{};
  const DWORD length = GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
  return length < value.size() ? std::wstring(value.data(), length) : std::wstring();
}

void Print(std::string_view text) {
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

void LeaveChild() {
  SetEnvironmentVariableW(L"QV_TEST_AGENT", L"hang");
  std::wstring line = GetCommandLineW();
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION made{};
  CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &made);
}

int SayVersion() {
  const std::wstring manner = Variable(L"QV_TEST_AGENT");
  if (manner == L"hang") {
    Print("0.1 (stopped");
    Sleep(kHangMs);
    return 0;
  }
  Print("9.8.7 (Test Agent)\r\nsecond line\r\n");
  if (manner == L"child") LeaveChild();
  const std::string piece(65'536, 'x');
  for (int i = 0; manner == L"flood" && i < 160; ++i)
    Print(piece);
  return 0;
}

std::string Utf8(std::wstring_view text) {
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

std::string WhatIsSeen() {
  std::array<wchar_t, 1024> text{};
  GetCurrentDirectoryW(static_cast<DWORD>(text.size()), text.data());
  std::string seen = "directory=" + Utf8(text.data()) + "\n";
  seen += "line=" + Utf8(GetCommandLineW()) + "\n";
  seen += "console=" + std::to_string(GetConsoleWindow() != nullptr || GetConsoleCP() != 0) + "\n";
  for (const wchar_t* name :
       {L"OPENAI_API_KEY", L"OPENCODE_MODEL", L"OPENAI_BASE_URL", L"OPENCODE_CONFIG", L"PATH"})
    seen += Utf8(name) + "=" + Utf8(Variable(name)) + "\n";
  return seen;
}

/// In one step, so that whoever waits for it never sees a part.
int Report(const std::wstring& path) {
  const std::wstring temporary = path + L".tmp";
  const HANDLE file = CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 1;
  const std::string seen = WhatIsSeen();
  DWORD written = 0;
  WriteFile(file, seen.data(), static_cast<DWORD>(seen.size()), &written, nullptr);
  CloseHandle(file);
  return MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2 && std::string_view(arguments[1]) == "--version") return SayVersion();
  return Report(Variable(L"QV_TEST_AGENT_REPORT"));
}
