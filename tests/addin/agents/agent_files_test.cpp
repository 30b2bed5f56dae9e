#include "services/agent_files.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "agent_world.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "services/agent_config.h"
#include "services/agent_places.h"
#include "services/named_lock.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

class AgentFiles : public AgentWorld {
 protected:
  [[nodiscard]] std::wstring Claude() const { return Profile() + L"\\.claude.json"; }

  /// Somebody who reads Claude's file, and lets nobody replace it meanwhile.
  [[nodiscard]] UniqueFile Held() const {
    UniqueFile file(
        CreateFileW(Claude().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(file);
    return file;
  }

  /// The names of what stands beside Claude's file, but for the file itself.
  [[nodiscard]] std::vector<std::wstring> Beside() const {
    std::vector<std::wstring> names;
    for (const auto& entry : fs::directory_iterator(Profile()))
      if (entry.path().wstring() != Claude()) names.push_back(entry.path().filename().wstring());
    return names;
  }
};

TEST_F(AgentFiles, AMissingFileIsMadeWithItsFolderAndNoBackup) {
  for (const AgentKind kind : {AgentKind::kClaude, AgentKind::kCodex, AgentKind::kOpenCode}) {
    EXPECT_FALSE(IsAgentConfigured(kind));
    const ConfigureResult result = ConfigureAgent(kind, {L"", L"qv_key"});
    EXPECT_TRUE(result.success) << ToUtf8(result.error);
    EXPECT_EQ(result.configPath, AgentConfigPath(kind));
    EXPECT_EQ(result.backupPath, L"");
    EXPECT_TRUE(IsAgentConfigured(kind));
  }
  EXPECT_EQ(ReadBytes(AgentConfigPath(AgentKind::kOpenCode)), ToUtf8(OpenCodeConfig({L"", L"qv_key"})));
}

TEST_F(AgentFiles, AFileIsCopiedBeforeItIsChanged) {
  WriteBytes(Claude(), "{\"a\":\"\xC3\xBC\"}");
  const ConfigureResult result = ConfigureAgent(AgentKind::kClaude, {});
  EXPECT_TRUE(result.success);
  const std::wstring head = Claude() + L".backup.20";
  EXPECT_EQ(result.backupPath.substr(0, head.size()), head);
  EXPECT_EQ(result.backupPath.size(), Claude().size() + 8 + 15);
  EXPECT_EQ(ReadBytes(result.backupPath), "{\"a\":\"\xC3\xBC\"}");
  EXPECT_EQ(ReadBytes(Claude()), WithMcpEntry(AgentKind::kClaude, "{\"a\":\"\xC3\xBC\"}"));
  EXPECT_EQ(Beside().size(), 1U);
  // Once more: one entry, and another backup once the second has passed.
  EXPECT_TRUE(
      PumpUntil([&] { return ConfigureAgent(AgentKind::kClaude, {}).backupPath != result.backupPath; }));
  EXPECT_EQ(ReadBytes(Claude()), WithMcpEntry(AgentKind::kClaude, "{\"a\":\"\xC3\xBC\"}"));
  EXPECT_EQ(Beside().size(), 2U);
}

TEST_F(AgentFiles, WhatCannotBeChangedSafelyStaysAsItIs) {
  WriteBytes(Claude(), "{\"a\":1,}");
  ConfigureResult result = ConfigureAgent(AgentKind::kClaude, {});
  EXPECT_FALSE(result.success);
  EXPECT_EQ(result.error, L"配置文件的格式无法识别，或 qv-excel 以其他写法定义，文件未修改");
  EXPECT_EQ(ReadBytes(Claude()), "{\"a\":1,}");
  EXPECT_EQ(Beside().size(), 0U);

  WriteBytes(Claude(), "{}");
  {
    const UniqueFile locked(
        CreateFileW(Claude().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    result = ConfigureAgent(AgentKind::kClaude, {});
    EXPECT_EQ(result.error, L"无法读取该 Agent 的配置文件");
  }
  EXPECT_EQ(Beside().size(), 0U);

  for (const bool isProtected : {false, true}) {
    const UniqueFile kept = isProtected ? UniqueFile() : Held();
    SetFileAttributesW(Claude().c_str(), isProtected ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
    result = ConfigureAgent(AgentKind::kClaude, {});
    EXPECT_FALSE(result.success);
    EXPECT_EQ(result.error, L"写入配置文件失败 (5)");
    EXPECT_EQ(result.backupPath, L"");
    EXPECT_EQ(ReadBytes(Claude()), "{}");
    EXPECT_EQ(Beside(), std::vector<std::wstring>());
  }
  SetFileAttributesW(Claude().c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(AgentFiles, AFileThatSomebodyHoldsIsTriedAgain) {
  WriteBytes(Claude(), "{}");
  UniqueFile held = Held();
  std::thread holder([&] {
    Sleep(300);
    held.Reset();
  });
  const ConfigureResult result = ConfigureAgent(AgentKind::kClaude, {});
  holder.join();
  EXPECT_TRUE(result.success) << ToUtf8(result.error);
  EXPECT_EQ(ReadBytes(Claude()), WithMcpEntry(AgentKind::kClaude, "{}"));
  EXPECT_EQ(ReadBytes(result.backupPath), "{}");
  EXPECT_EQ(Beside().size(), 1U);
}

TEST_F(AgentFiles, WithoutABackupNothingIsChanged) {
  WriteBytes(Claude(), "{}");
  // Whatever second it is, a folder has the backup's name.
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  ULARGE_INTEGER ticks{{now.dwLowDateTime, now.dwHighDateTime}};
  for (int second = 0; second < 20; ++second, ticks.QuadPart += 10'000'000) {
    const FILETIME moment{ticks.LowPart, ticks.HighPart};
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    FileTimeToSystemTime(&moment, &utc);
    SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local);
    fs::create_directories(Concat(Claude(), L".backup.", Padded{local.wYear, 4}, Padded{local.wMonth, 2},
                                  Padded{local.wDay, 2}, L'_', Padded{local.wHour, 2},
                                  Padded{local.wMinute, 2}, Padded{local.wSecond, 2}));
  }
  const ConfigureResult result = ConfigureAgent(AgentKind::kClaude, {});
  EXPECT_FALSE(result.success);
  EXPECT_EQ(result.error, L"备份原配置文件失败");
  EXPECT_EQ(result.backupPath, L"");
  EXPECT_EQ(ReadBytes(Claude()), "{}");
}

TEST_F(AgentFiles, WithoutAProfileThereIsNoPath) {
  for (const std::wstring& profile : {std::wstring(), L"C:\\" + std::wstring(257, L'x')}) {
    SetVariable(L"USERPROFILE", profile.empty() ? nullptr : profile.c_str());
    const ConfigureResult result = ConfigureAgent(AgentKind::kCodex, {});
    EXPECT_FALSE(result.success);
    EXPECT_EQ(result.configPath, L"");
    EXPECT_EQ(result.error, L"无法确定该 Agent 的配置文件路径");
    EXPECT_EQ(WriteOpenCodeConfig({}), L"无法确定该 Agent 的配置文件路径");
  }
}

/// Somebody who writes Claude's file anew, as agents do: emptied first, then bit by bit.
class Owner {
 public:
  Owner(const std::wstring& path, DWORD disposition)
      : file_(CreateFileW(path.c_str(), GENERIC_WRITE, kShareAll, nullptr, disposition, 0, nullptr)) {
    EXPECT_TRUE(file_);
  }
  void Write(std::string_view text) {
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file_.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
  }
  void Close() { file_.Reset(); }

 private:
  static constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  UniqueFile file_;
};

TEST_F(AgentFiles, AFileThatItsOwnerIsWritingIsWaitedFor) {
  const std::string whole = R"({"userID": "theirs"})";
  const struct {
    const char* what;
    std::function<std::function<void()>()> begin;
  } cases[] = {
      {"emptied, and still open",
       [&] {
         WriteBytes(Claude(), whole);
         const auto owner = std::make_shared<Owner>(Claude(), TRUNCATE_EXISTING);
         return [&, owner] {
           owner->Write(whole);
           owner->Close();
         };
       }},
      {"emptied, to be opened again",
       [&] {
         WriteBytes(Claude(), "");
         return [&] { WriteBytes(Claude(), whole); };
       }},
      {"half there",
       [&] {
         WriteBytes(Claude(), whole.substr(0, 9));
         return [&] { WriteBytes(Claude(), whole); };
       }},
      {"missing, to be made",
       [&] {
         fs::remove(Claude());
         return [&] { Owner(Claude(), CREATE_NEW).Write(whole); };
       }},
  };
  for (const auto& c : cases) {
    const std::function<void()> finish = c.begin();
    std::thread owner([&] {
      // Well inside the time between the first look and the second.
      Sleep(100);
      finish();
    });
    const ConfigureResult result = ConfigureAgent(AgentKind::kClaude, {});
    owner.join();
    EXPECT_TRUE(result.success) << c.what << ": " << ToUtf8(result.error);
    EXPECT_EQ(ReadBytes(Claude()), WithMcpEntry(AgentKind::kClaude, whole)) << c.what;
    EXPECT_EQ(ReadBytes(result.backupPath), whole) << c.what;
    fs::remove(result.backupPath);
  }
  EXPECT_EQ(Beside(), std::vector<std::wstring>());
}

TEST_F(AgentFiles, AnOwnerWhoDoesNotFinishIsLeftAlone) {
  WriteBytes(Claude(), "");
  Owner owner(Claude(), OPEN_EXISTING);
  const ConfigureResult result = ConfigureAgent(AgentKind::kClaude, {});
  EXPECT_FALSE(result.success);
  EXPECT_EQ(result.error, L"无法读取该 Agent 的配置文件");
  owner.Write("{}");
  owner.Close();
  EXPECT_EQ(ReadBytes(Claude()), "{}");
}

TEST_F(AgentFiles, WritersTakeTurns) {
  WriteBytes(Claude(), "{}");
  std::atomic<bool> done{false};
  std::thread writer;
  {
    const NamedLock lock(L"Local\\Quorvantis.AgentConfig", std::chrono::milliseconds(0));
    ASSERT_TRUE(lock);
    writer = std::thread([&] {
      EXPECT_TRUE(ConfigureAgent(AgentKind::kClaude, {}).success);
      done = true;
    });
    EXPECT_FALSE(PumpUntil([&] { return done.load(); }, std::chrono::milliseconds(300)));
    EXPECT_EQ(ReadBytes(Claude()), "{}");
  }
  writer.join();
  EXPECT_TRUE(IsAgentConfigured(AgentKind::kClaude));
}

}  // namespace
}  // namespace qv
