#include "foundation/log_files.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <vector>

#include "foundation/logging.h"
#include "scratch_folder.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

constexpr LocalTime kTime{2026, 3, 1, 9, 8, 7, 6};
constexpr std::uintmax_t kLimit = 52'428'800;

/// A file of a size, which costs no disk space, last written so many hours ago.
void MakeLog(const std::wstring& path, std::uintmax_t bytes, int hoursAgo = 0) {
  WriteBytes(path, "");
  fs::resize_file(path, bytes);
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(hoursAgo));
}

std::wstring UnitsOf(const std::string& bytes) {
  std::wstring units(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(units.data(), bytes.data(), units.size() * sizeof(wchar_t));
  return units;
}

class LogFolder : public testing::Test {
 protected:
  std::wstring Choose(const std::wstring& localAppData, const std::wstring& module) {
    said_.clear();
    return ChooseLogDirectory(
        {localAppData, module, [this](const std::wstring& line) { said_.push_back(line); }});
  }
  using Lines = std::vector<std::wstring>;
  ScratchFolder folder_;
  Lines said_;
};

TEST_F(LogFolder, IsMadeInTheUsersDataAndOldFallbackLogsArePruned) {
  const std::wstring module = folder_.Path(L"module");
  fs::create_directories(module + L"\\log");
  MakeLog(module + L"\\log\\Quorvantis_old.log", 1, 100);
  MakeLog(module + L"\\log\\Quorvantis_new.log", 1, 1);
  const std::wstring expected = folder_.Path(L"Quorvantis\\log");
  EXPECT_EQ(Choose(folder_.Path(), module), expected);
  EXPECT_EQ(said_, Lines{L"[Quorvantis] log dir: " + expected + L"\r\n"});
  EXPECT_TRUE(fs::is_empty(expected));
  EXPECT_FALSE(fs::exists(module + L"\\log\\Quorvantis_old.log"));
  EXPECT_TRUE(fs::exists(module + L"\\log\\Quorvantis_new.log"));
}

TEST_F(LogFolder, FallsBackToTheModuleAndThenToNone) {
  const std::wstring module = folder_.Path(L"module");
  fs::create_directories(module);
  EXPECT_EQ(Choose(L"", module), module + L"\\log");
  EXPECT_EQ(said_, (Lines{L"[Quorvantis] log dir: SHGetFolderPath LOCALAPPDATA failed\r\n",
                          L"[Quorvantis] log dir fallback install: " + module + L"\\log\r\n"}));

  // A file where the folder should be makes it unwritable for everyone.
  WriteBytes(folder_.Path(L"Quorvantis"), "");
  EXPECT_EQ(Choose(folder_.Path(), module), module + L"\\log");
  EXPECT_EQ(said_, (Lines{L"[Quorvantis] log dir: LOCALAPPDATA not writable, trying install dir\r\n",
                          L"[Quorvantis] log dir fallback install: " + module + L"\\log\r\n"}));

  EXPECT_EQ(Choose(L"", L""), L"");
  EXPECT_EQ(said_, (Lines{L"[Quorvantis] log dir: SHGetFolderPath LOCALAPPDATA failed\r\n",
                          L"[Quorvantis] log dir: no writable directory\r\n"}));
}

TEST_F(LogFolder, RotatesOnlyAboveTheLimitAndOverAnEarlierFile) {
  const std::wstring log = folder_.Path(L"Quorvantis_x.log");
  const std::wstring rotated = folder_.Path(L"Quorvantis_x.20260301-090807.log");
  MakeLog(log, kLimit);
  RotateLogFile(log, kTime);
  EXPECT_TRUE(fs::exists(log));
  EXPECT_FALSE(fs::exists(rotated));
  WriteBytes(rotated, "earlier");
  MakeLog(log, kLimit + 1);
  RotateLogFile(log, kTime);
  EXPECT_FALSE(fs::exists(log));
  EXPECT_EQ(fs::file_size(rotated), kLimit + 1);
}

TEST_F(LogFolder, PrunesAndCapsOnlyOwnFiles) {
  const auto at = [&](const wchar_t* name) { return folder_.Path(name); };
  MakeLog(at(L"Quorvantis_73h.log"), 1, 73);
  MakeLog(at(L"quorvantis_73h.1.log"), 1, 73);
  MakeLog(at(L"Quorvantis_71h.log"), kLimit / 2, 71);
  MakeLog(at(L"Quorvantis_1h.log"), kLimit / 2, 1);
  MakeLog(at(L"Quorvantis_73h.txt"), 1, 73);
  MakeLog(at(L"Other_73h.log"), kLimit, 73);
  fs::create_directories(at(L"Quorvantis_folder.log"));
  PruneOldLogs(folder_.Path());
  EXPECT_FALSE(fs::exists(at(L"Quorvantis_73h.log")));
  EXPECT_FALSE(fs::exists(at(L"quorvantis_73h.1.log")));

  CapLogFolderSize(folder_.Path());
  EXPECT_TRUE(fs::exists(at(L"Quorvantis_71h.log"))) << "exactly at the cap";
  MakeLog(at(L"Quorvantis_new.log"), 1);
  CapLogFolderSize(folder_.Path());
  EXPECT_FALSE(fs::exists(at(L"Quorvantis_71h.log")));
  for (const wchar_t* kept : {L"Quorvantis_1h.log", L"Quorvantis_new.log", L"Quorvantis_73h.txt",
                              L"Other_73h.log", L"Quorvantis_folder.log"}) {
    EXPECT_TRUE(fs::exists(at(kept))) << kept;
  }
}

TEST_F(LogFolder, AppendedEntriesAreRawUnitsEachEndedOnceMore) {
  const std::wstring log = folder_.Path(L"x.log");
  AppendToLogFile(log, L"[p] ", L"\u4E2D\r\n");
  AppendToLogFile(log, L"", L"");
  AppendToLogFile(log, L"ignored", std::wstring_view());
  AppendToLogFile(L"", L"p", L"t");
  EXPECT_EQ(UnitsOf(ReadBytes(log)), L"[p] \u4E2D\r\n\r\n\r\n");
}

TEST(Logging, LinesReachTheUsersTraceFiles) {
  const std::wstring path = GetPaneTraceLogPath();
  ASSERT_TRUE(path.ends_with(L"\\Quorvantis\\log\\QuorvantisPane_excel_trace.log")) << path;
  PaneLog(L"probe \u4E2D\r\n");
  PaneLog(std::wstring_view());
  LogPaneDiagnostic({nullptr, nullptr, 7}, L"probe", E_FAIL);
  const std::wstring text = UnitsOf(ReadBytes(path));
  const std::wstring tid = std::to_wstring(GetCurrentThreadId());
  EXPECT_NE(text.find(L" tid=" + tid + L"] probe \u4E2D\r\n\r\n["), std::wstring::npos);
  EXPECT_NE(text.find(L" tid=" + tid + L"] (null)\r\n["), std::wstring::npos);
  EXPECT_TRUE(text.ends_with(L"] [QuorvantisPane tid=" + tid +
                             L"] probe hr=0x80004005 hwnd=0x0 parent=0x0 port=7\r\n\r\n"));

  TraceTranslateEvent("cpp.probe", L"text=\u4E2D");
  const std::string trace = ReadBytes(GetLogDirectory() + L"\\Quorvantis_translate_trace.log");
  EXPECT_TRUE(trace.ends_with("] cpp.probe text=\xE4\xB8\xAD\n")) << trace.size();
  EXPECT_EQ(trace.find('\r'), std::string::npos);
}

}  // namespace
}  // namespace qv
