#include "services/agent_installer.h"

#include <winsock2.h>

#include <windows.h>

#include <thread>
#include <vector>

#include "agent_world.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "loopback_listener.h"
#include "loopback_server.h"
#include "services/agent_detection.h"
#include "services/agent_places.h"
#include "services/folder_removal.h"
#include "services/named_lock.h"
#include "services/package_unpack.h"
#include "zip_archive.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

class AgentInstaller : public AgentWorld {
 protected:
  AgentInstaller() {
    std::wstring tools = ReplaceAll(QV_TAR_FOLDER, L"/", L"\\");
    SetVariable(L"PATH", tools.starts_with(L'\\') ? L"Z:" + tools : tools);
    fs::create_directories(In(L"temp"));
    SetVariable(L"TMP", In(L"temp"));
    SetVariable(L"TEMP", In(L"temp"));
  }
  ~AgentInstaller() override { EXPECT_FALSE(EmptyFolder(Target())); }

  [[nodiscard]] std::wstring Target() const { return In(L"add in \u4E2D\\agents\\opencode"); }
  [[nodiscard]] std::wstring Package(const std::string& bytes) const {
    WriteBytes(In(L"p.zip"), bytes);
    return L"file:///" + ReplaceAll(In(L"p.zip"), L"\\", L"/");
  }
  [[nodiscard]] InstallResult Install(const std::wstring& location) const {
    InstallResult result = InstallOpencode(location, Target());
    EXPECT_TRUE(fs::is_empty(In(L"temp"))) << "a package was left behind";
    return result;
  }
  /// An older copy with a file in a folder, both write-protected.
  void AddOlderCopy() const {
    fs::create_directories(Target() + L"\\old");
    for (const wchar_t* name : {L"\\opencode.exe", L"\\old\\lib.dll"}) {
      WriteBytes(Target() + name, TestAgentBytes());
      SetFileAttributesW((Target() + name).c_str(), FILE_ATTRIBUTE_READONLY);
    }
  }
};

std::string FlatZip() {
  return ZipArchive({{"opencode.exe", TestAgentBytes()}, {"docs/\xE4\xB8\xAD.txt", "text"}});
}

std::string Reply(std::string_view head, const std::string& body, std::size_t announced) {
  return std::string(head) + "\r\nContent-Length: " + std::to_string(announced) + "\r\n\r\n" + body;
}

std::wstring Url(const LoopbackServer& server) {
  return Concat(L"http://127.0.0.1:", server.Endpoint().port, L"/p/o.zip?a=1#x");
}

TEST_F(AgentInstaller, APackageReplacesAnOlderCopyWhole) {
  AddOlderCopy();
  const InstallResult result = Install(Package(FlatZip()));
  EXPECT_TRUE(result.success) << ToUtf8(result.error);
  EXPECT_EQ(result.exePath, Target() + L"\\opencode.exe");
  EXPECT_EQ(result.version, L"9.8.7 (Test Agent)");
  EXPECT_FALSE(fs::exists(Target() + L"\\old"));
  EXPECT_EQ(ReadBytes(Target() + L"\\docs\\\u4E2D.txt"), "text");
  const std::wstring log = Log();
  std::size_t at = 0;
  for (const wchar_t* line : {L"[AgentInstaller] file URL copy: ", L"[AgentInstaller] downloaded zip to ",
                              L"[AgentInstaller] tar extract ok: ",
                              L"[AgentInstaller] opencode version: 9.8.7 (Test Agent)\r\nsecond line\r\n"}) {
    at = log.find(line, at);
    EXPECT_NE(at, std::wstring::npos) << ToUtf8(line);
  }
}

TEST_F(AgentInstaller, AnExecutableOneFolderDownIsFound) {
  const InstallResult result = Install(Package(
      ZipArchive({{"a/readme", ""}, {"opencode-windows/opencode.exe", TestAgentBytes()}, {"x", ""}})));
  EXPECT_EQ(result.exePath, Target() + L"\\opencode-windows\\opencode.exe");
  EXPECT_TRUE(result.success);
}

TEST_F(AgentInstaller, APackageWithoutTheExecutableFails) {
  const InstallResult result = Install(Package(ZipArchive({{"a/b/opencode.exe", TestAgentBytes()}})));
  EXPECT_FALSE(result.success);
  EXPECT_EQ(result.error, L"安装包中未找到 opencode.exe");
  EXPECT_EQ(result.exePath, L"");
}

TEST_F(AgentInstaller, APackageIsDownloadedWhereverTheServerPointsTo) {
  const std::string zip = FlatZip();
  LoopbackServer target({Reply("HTTP/1.1 200 OK", zip, zip.size())});
  LoopbackServer server(
      {Reply("HTTP/1.1 302 Found\r\nLocation: " + ToUtf8(ReplaceAll(Url(target), L"#x", L"")), "", 0)});
  EXPECT_TRUE(Install(Url(server)).success);
  const std::string request = server.WaitForRequests(1).at(0);
  EXPECT_TRUE(request.starts_with("GET /p/o.zip?a=1 HTTP/1.1\r\n")) << request;
  EXPECT_NE(request.find("User-Agent: QuorvantisAgentInstaller/1.0\r\n"), std::string::npos) << request;
}

TEST_F(AgentInstaller, WhatIsNoWholePackageTouchesNothing) {
  AddOlderCopy();
  const std::string zip = FlatZip();
  LoopbackServer missing({Reply("HTTP/1.1 404 Not Found", "no", 2)});
  LoopbackServer cut({Reply("HTTP/1.1 200 OK", zip.substr(0, zip.size() / 2), zip.size())});
  const struct {
    std::wstring location;
    const wchar_t* log;
  } cases[] = {
      {Url(missing), L"download http status 404\r\n"},
      {Url(cut), L""},
      {Concat(L"http://127.0.0.1:", ClosedPort(), L"/p"), L"download failed: HTTP request failed\r\n"},
      {L"no address", L"WinHttpCrackUrl failed for no address\r\n"},
      {L"file:///" + In(L"none.zip"), L"file URL copy: "},
  };
  for (const auto& c : cases) {
    const InstallResult result = Install(c.location);
    EXPECT_FALSE(result.success) << ToUtf8(c.location);
    EXPECT_EQ(result.error, L"下载 OpenCode 安装包失败");
    EXPECT_TRUE(Contains(Log(), Concat(L"[AgentInstaller] ", c.log))) << ToUtf8(c.log);
  }
  EXPECT_TRUE(fs::exists(Target() + L"\\opencode.exe"));
  EXPECT_TRUE(fs::exists(Target() + L"\\old\\lib.dll"));
}

TEST_F(AgentInstaller, ASlowServerIsWaitedFor) {
  const std::string reply = Reply("HTTP/1.1 200 OK", FlatZip(), FlatZip().size());
  std::uint16_t port = 0;
  const SOCKET listener = ListenOnLoopback(port);
  std::thread server([&] {
    const SOCKET connection = accept(listener, nullptr, nullptr);
    constexpr std::size_t kPieces = 20;
    for (std::size_t i = 0; i < kPieces; ++i) {
      const std::size_t from = reply.size() * i / kPieces;
      const std::size_t to = reply.size() * (i + 1) / kPieces;
      send(connection, reply.data() + from, static_cast<int>(to - from), 0);
      Sleep(50);
    }
    shutdown(connection, SD_SEND);
    closesocket(connection);
  });
  EXPECT_TRUE(Install(Concat(L"http://127.0.0.1:", port, L"/p.zip")).success);
  server.join();
  closesocket(listener);
  WSACleanup();
}

TEST_F(AgentInstaller, WithoutTarTheShellIsTriedAndTheAnswerComes) {
  SetVariable(L"PATH", Programs());
  const InstallResult result = Install(Package(FlatZip()));
  const std::wstring log = Log();
  const std::size_t failed = log.find(L"[AgentInstaller] tar extract failed: tar.exe not found\r\n");
  EXPECT_NE(failed, std::wstring::npos);
  EXPECT_NE(log.find(L"[AgentInstaller] tar failed, trying shell fallback\r\n", failed), std::wstring::npos);
  // Wine's shell opens no archives.
  EXPECT_TRUE(result.success || result.error == L"解压 OpenCode 安装包失败") << ToUtf8(result.error);
}

TEST_F(AgentInstaller, TheShellsCopyIsWaitedForUntilTheFileIsAtRest) {
  // A folder stands in for the archive: the shell copies from both alike.
  fs::create_directories(In(L"source"));
  fs::create_directories(In(L"target"));
  WriteBytes(In(L"source\\opencode.exe"), TestAgentBytes());
  const auto locate = [&] { return In(L"target\\opencode.exe"); };
  const bool copied = ExtractWithShell(In(L"source"), In(L"target"), locate, std::chrono::seconds(20));
  EXPECT_EQ(copied, ReadBytes(locate()) == TestAgentBytes());
  EXPECT_FALSE(ExtractWithShell(In(L"none.zip"), In(L"target"), locate, std::chrono::seconds(1)));
}

TEST_F(AgentInstaller, ADamagedPackageFails) {
  std::string zip = FlatZip();
  zip[zip.find("opencode.exe") + 2000] ^= 1;
  const InstallResult result = Install(Package(zip));
  EXPECT_FALSE(result.success);
  EXPECT_TRUE(Contains(Log(), L"tar extract failed: tar: opencode.exe: damaged")) << ToUtf8(Log());
}

TEST_F(AgentInstaller, NothingIsUnpackedOutsideTheFolder) {
  EXPECT_FALSE(Install(Package(ZipArchive({{"a/../../evil.txt", "x"}}))).success);
  EXPECT_FALSE(fs::exists(fs::path(Target()).parent_path() / L"evil.txt"));
}

TEST_F(AgentInstaller, ACopyThatRunsStaysWhole) {
  AddOlderCopy();
  SetVariable(L"QV_TEST_AGENT", L"hang");
  std::wstring line = L"\"" + Target() + L"\\opencode.exe\" --version";
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION made{};
  ASSERT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                             nullptr, &startup, &made));
  const UniqueKernelHandle process(made.hProcess);
  const UniqueKernelHandle thread(made.hThread);
  const InstallResult result = Install(Package(FlatZip()));
  TerminateProcess(process.Get(), 0);
  WaitForSingleObject(process.Get(), 5000);
  EXPECT_FALSE(result.success);
  EXPECT_EQ(result.error, L"旧版本正在使用，未作修改：" + Target() + L"\\opencode.exe");
  for (const wchar_t* name : {L"\\opencode.exe", L"\\old\\lib.dll"})
    EXPECT_TRUE((GetFileAttributesW((Target() + name).c_str()) & FILE_ATTRIBUTE_READONLY) != 0)
        << ToUtf8(name);
}

TEST(FolderRemoval, EachRefusalIsCalledWhatItIs) {
  const struct {
    const wchar_t* text;
    std::vector<DWORD> errors;
  } cases[] = {
      {L"旧版本正在使用，未作修改：",
       {ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION, ERROR_USER_MAPPED_FILE}},
      {L"没有权限删除旧版本，未作修改：",
       {ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT, ERROR_PRIVILEGE_NOT_HELD}},
      {L"无法删除旧版本，未作修改：", {ERROR_CRC, ERROR_NOT_READY, ERROR_FILENAME_EXCED_RANGE}},
  };
  for (const auto& c : cases)
    for (const DWORD error : c.errors)
      EXPECT_STREQ(RefusalText(error), c.text) << error;
}

TEST_F(AgentInstaller, FoldersThatSomebodyOnlyWatchesAreNoObstacle) {
  AddOlderCopy();
  std::vector<UniqueFile> watchers;
  for (const std::wstring& folder : {Target(), Target() + L"\\old"}) {
    watchers.emplace_back(CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    ASSERT_TRUE(watchers.back());
  }
  const InstallResult result = Install(Package(FlatZip()));
  EXPECT_TRUE(result.success) << ToUtf8(result.error);
  watchers.clear();
  EXPECT_FALSE(fs::exists(Target() + L"\\old"));
}

TEST_F(AgentInstaller, AFolderThatSomebodyWorksInIsInUse) {
  fs::create_directories(Target() + L"\\old");
  WriteBytes(Target() + L"\\a.txt", "kept");
  {
    const UniqueFile open(CreateFileW((Target() + L"\\old").c_str(), FILE_LIST_DIRECTORY,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    ASSERT_TRUE(open);
    EXPECT_EQ(Install(Package(FlatZip())).error, L"旧版本正在使用，未作修改：" + Target() + L"\\old");
    EXPECT_EQ(ReadBytes(Target() + L"\\a.txt"), "kept");
    EXPECT_TRUE(Contains(Log(), Concat(L"[AgentInstaller] removal refused (", ERROR_SHARING_VIOLATION, L"): ",
                                       Target(), L"\\old\r\n")));
  }
  EXPECT_TRUE(Install(Package(FlatZip())).success);
}

TEST_F(AgentInstaller, AVersionCheckOfTheOwnCopyIsWaitedFor) {
  const OwnCopy own;
  SetVariable(L"QV_TEST_AGENT", L"hang");
  std::thread detection([] { EXPECT_EQ(DetectAgents()[0].version, L"0.1 (stopped"); });
  // Until the check has begun nobody else is kept out.
  EXPECT_TRUE(PumpUntil([] { return !NamedLock(kOwnCopyLock, std::chrono::milliseconds(0)); }));
  SetVariable(L"QV_TEST_AGENT", nullptr);
  const InstallResult result = Install(Package(FlatZip()));
  EXPECT_TRUE(result.success) << ToUtf8(result.error);
  detection.join();
}

TEST_F(AgentInstaller, OneInstallationRunsAtATime) {
  InstallResult result;
  const NamedLock lock(kOwnCopyLock, std::chrono::milliseconds(0));
  ASSERT_TRUE(lock);
  std::thread([&] { result = Install(Package(FlatZip())); }).join();
  EXPECT_FALSE(result.success);
  EXPECT_EQ(result.error, L"正在安装 OpenCode，请稍候");
  EXPECT_FALSE(fs::exists(Target()));
}

}  // namespace
}  // namespace qv
