// Plays a coding agent. With "--version" it says which version it is, in the manner of QV_TEST_AGENT: "hang"
// stops in the middle of a line for a minute, "flood" goes on for 10 MB, "child" leaves a process behind that
// holds its output. Otherwise it writes what it sees, as UTF-8 lines, to the file that QV_TEST_AGENT_REPORT
// names, and ends; in the manner "work" it has asked the tool server and the models for something before, by
// what it was given alone.

#include <windows.h>

#include <winhttp.h>

#include <array>
#include <memory>
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

struct CloseInternet {
  using pointer = HINTERNET;
  void operator()(HINTERNET handle) const { WinHttpCloseHandle(handle); }
};
using Internet = std::unique_ptr<HINTERNET, CloseInternet>;

std::string ReadAnswer(HINTERNET request) {
  std::string answer;
  std::array<char, 4096> piece{};
  DWORD read = 0;
  while (WinHttpReadData(request, piece.data(), static_cast<DWORD>(piece.size()), &read) && read > 0)
    answer.append(piece.data(), read);
  return answer;
}

/// The body of the answer to a POST of JSON, on one line; "nothing" when there is none.
std::string Ask(const std::wstring& url, const std::wstring& key, std::string body) {
  URL_COMPONENTS parts{};
  parts.dwStructSize = sizeof(parts);
  parts.dwHostNameLength = parts.dwUrlPathLength = static_cast<DWORD>(-1);
  if (!WinHttpCrackUrl(url.c_str(), 0, 0, &parts)) return "nothing";
  const std::wstring host(parts.lpszHostName, parts.dwHostNameLength);
  const Internet session(WinHttpOpen(L"TestAgent/1.0", WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0));
  const Internet connection(WinHttpConnect(session.get(), host.c_str(), parts.nPort, 0));
  const Internet request(
      WinHttpOpenRequest(connection.get(), L"POST", parts.lpszUrlPath, nullptr, nullptr, nullptr, 0));
  const std::wstring headers = L"Content-Type: application/json\r\nAuthorization: Bearer " + key;
  const auto size = static_cast<DWORD>(body.size());
  if (!WinHttpSendRequest(request.get(), headers.c_str(), static_cast<DWORD>(-1), body.data(), size, size,
                          0) ||
      !WinHttpReceiveResponse(request.get(), nullptr))
    return "nothing";
  std::string answer = ReadAnswer(request.get());
  std::erase(answer, '\n');
  return answer;
}

std::string FileText(const std::wstring& path) {
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::string text(65'536, '\0');
  DWORD read = 0;
  ReadFile(file, text.data(), static_cast<DWORD>(text.size()), &read, nullptr);
  CloseHandle(file);
  text.resize(read);
  return text;
}

/// The first text under this key of a JSON file that holds no escapes there.
std::wstring TextUnder(std::string_view json, std::string_view key) {
  const std::size_t at = json.find("\"" + std::string(key) + "\": \"");
  if (at == std::string_view::npos) return {};
  const std::size_t begin = at + key.size() + 5;
  const std::string_view text = json.substr(begin, json.find('"', begin) - begin);
  return {text.begin(), text.end()};
}

/// Asks both servers, each at the address and with the key that it was told.
std::string Work() {
  const std::wstring tools = TextUnder(FileText(Variable(L"OPENCODE_CONFIG")), "url");
  const std::wstring models = Variable(L"OPENAI_BASE_URL") + L"/chat/completions";
  std::string done = "tools=" + Ask(tools, {}, R"({"jsonrpc":"2.0","id":1,"method":"tools/list"})") + "\n";
  done +=
      "models=" +
      Ask(models, Variable(L"OPENAI_API_KEY"), R"({"model":"quorvantis/deepseek-v4-flash","messages":[]})") +
      "\n";
  return done;
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
  if (Variable(L"QV_TEST_AGENT") == L"work") seen += Work();
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
