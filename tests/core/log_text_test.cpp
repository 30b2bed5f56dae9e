#include "foundation/log_text.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace qv {
namespace {

constexpr LocalTime kTime{2026, 3, 1, 9, 8, 7, 6};
constexpr std::uint64_t kMiB = 1024 * 1024;

TEST(LogText, PrefixesAndLinesHaveTheirForms) {
  EXPECT_EQ(PaneLinePrefix(kTime, 42), L"[2026-03-01 09:08:07.006 tid=42] ");
  EXPECT_EQ(PaneDiagnosticPrefix(kTime), L"[2026-03-01 09:08:07.006] ");
  EXPECT_EQ(PaneDiagnosticLine(42, L"WM_CREATE", 0x80004005, 0x1A2B, 0, 7878),
            L"[QuorvantisPane tid=42] WM_CREATE hr=0x80004005 hwnd=0x1a2b parent=0x0 port=7878\r\n");
}

TEST(LogText, TraceRecordIsCutAt1535Bytes) {
  EXPECT_EQ(TranslateTraceRecord(kTime, "cpp.x", "a=1"), "[2026-03-01T09:08:07.006] cpp.x a=1\n");
  EXPECT_EQ(TranslateTraceRecord(kTime, {}, {}), "[2026-03-01T09:08:07.006] (null) \n");
  const std::size_t frame = TranslateTraceRecord(kTime, "e", "").size();
  const std::string whole = TranslateTraceRecord(kTime, "e", std::string(1535 - frame, 'x'));
  EXPECT_EQ(whole.size(), 1535u);
  EXPECT_EQ(whole.back(), '\n');
  const std::string cut = TranslateTraceRecord(kTime, "e", std::string(1536 - frame, 'x'));
  EXPECT_EQ(cut.size(), 1535u);
  EXPECT_EQ(cut.back(), 'x');
}

TEST(LogText, RotatedNameCutsAtTheLastDotAnywhere) {
  EXPECT_EQ(RotatedLogPath(L"C:\\a\\x_trace.log", kTime), L"C:\\a\\x_trace.20260301-090807.log");
  EXPECT_EQ(RotatedLogPath(L"C:\\a.b\\trace", kTime), L"C:\\a.20260301-090807.log");
  EXPECT_EQ(RotatedLogPath(L"trace", kTime), L"trace.20260301-090807.log");
}

TEST(LogText, LimitsHoldOnBothSides) {
  EXPECT_FALSE(NeedsRotation(52'428'800));
  EXPECT_TRUE(NeedsRotation(52'428'801));
  constexpr std::uint64_t kThreeDays = 2'592'000'000'000;
  EXPECT_FALSE(IsTooOld(1000, 1000 + kThreeDays));
  EXPECT_TRUE(IsTooOld(1000, 1001 + kThreeDays));
  EXPECT_FALSE(IsTooOld(2000, 1000));
  EXPECT_TRUE(IsMaintenanceDue(0, 5));
  EXPECT_FALSE(IsMaintenanceDue(1000, 300'999));
  EXPECT_TRUE(IsMaintenanceDue(1000, 301'000));
}

TEST(LogText, OnlyOwnLogNamesAreTouched) {
  for (const wchar_t* name : {L"QuorvantisPane_excel_trace.log",
                              L"quorvantis_translate_trace.20260301-090807.log", L"QUORVANTIS.log.bak"})
    EXPECT_TRUE(IsManagedLogName(name)) << name;
  for (const wchar_t* name : {L"Quorvanti.log", L"xQuorvantis.log", L"Quorvantis.txt", L"", L"Q.log"})
    EXPECT_FALSE(IsManagedLogName(name)) << name;
}

TEST(LogText, CapRemovesTheOldestUntilTheRestFits) {
  const std::vector<LogFile> files = {{L"new", 20 * kMiB, 300},
                                      {L"oldest", 20 * kMiB, 100},
                                      {L"locked", 10 * kMiB, 150},
                                      {L"old", 20 * kMiB, 200}};
  std::vector<std::wstring> asked;
  CapLogFiles(files, [&](const std::wstring& path) {
    asked.push_back(path);
    return path != L"locked";
  });
  EXPECT_EQ(asked, (std::vector<std::wstring>{L"oldest"}));

  // What cannot be removed keeps counting; exactly at the cap nothing more goes.
  asked.clear();
  std::vector<LogFile> more = files;
  more[1].path = L"locked";
  CapLogFiles(more, [&](const std::wstring& path) {
    asked.push_back(path);
    return path != L"locked";
  });
  EXPECT_EQ(asked, (std::vector<std::wstring>{L"locked", L"locked", L"old"}));
}

}  // namespace
}  // namespace qv
