#include "foundation/log_text.h"

#include <algorithm>

#include "foundation/text.h"

namespace qv {
namespace {

/// Above it a single log is moved aside; up to it all logs of a folder may grow together.
constexpr std::uint64_t kMaxLogBytes = 52'428'800;
constexpr std::uint64_t kMaxAge = 259'200ULL * 10'000'000;
constexpr std::uint64_t kMaintenanceIntervalMs = 300'000;
constexpr std::size_t kMaxRecordBytes = 1535;
constexpr std::wstring_view kNamePrefix = L"Quorvantis";

std::wstring DateText(const LocalTime& time) {
  return Concat(Padded{time.year, 4}, L'-', Padded{time.month, 2}, L'-', Padded{time.day, 2});
}

std::wstring ClockText(const LocalTime& time) {
  return Concat(Padded{time.hour, 2}, L':', Padded{time.minute, 2}, L':', Padded{time.second, 2}, L'.',
                Padded{time.millisecond, 3});
}

}  // namespace

std::wstring PaneLinePrefix(const LocalTime& time, std::uint32_t threadId) {
  return Concat(L'[', DateText(time), L' ', ClockText(time), L" tid=", threadId, L"] ");
}

std::wstring PaneDiagnosticPrefix(const LocalTime& time) {
  return Concat(L'[', DateText(time), L' ', ClockText(time), L"] ");
}

std::wstring PaneDiagnosticLine(std::uint32_t threadId, std::wstring_view message, std::uint32_t hr,
                                std::uint64_t window, std::uint64_t parent, int localPort) {
  return Concat(L"[QuorvantisPane tid=", threadId, L"] ", message, L" hr=0x", Hex{hr}, L" hwnd=0x",
                Hex{window}, L" parent=0x", Hex{parent}, L" port=", localPort, L"\r\n");
}

std::string TranslateTraceRecord(const LocalTime& time, std::string_view event, std::string_view detail) {
  std::string record = ToUtf8(Concat(L'[', DateText(time), L'T', ClockText(time), L"] "));
  record += event.data() == nullptr ? std::string_view("(null)") : event;
  record += ' ';
  record += detail;
  record += '\n';
  if (record.size() > kMaxRecordBytes) record.resize(kMaxRecordBytes);
  return record;
}

std::wstring RotatedLogPath(std::wstring_view path, const LocalTime& time) {
  return Concat(path.substr(0, path.rfind(L'.')), L'.', Padded{time.year, 4}, Padded{time.month, 2},
                Padded{time.day, 2}, L'-', Padded{time.hour, 2}, Padded{time.minute, 2},
                Padded{time.second, 2}, L".log");
}

bool NeedsRotation(std::uint64_t bytes) {
  return bytes > kMaxLogBytes;
}

bool IsMaintenanceDue(std::uint64_t lastTick, std::uint64_t nowTick) {
  return lastTick == 0 || nowTick - lastTick >= kMaintenanceIntervalMs;
}

bool IsManagedLogName(std::wstring_view fileName) {
  return EqualsIgnoreAsciiCase(fileName.substr(0, kNamePrefix.size()), kNamePrefix) &&
         Contains(fileName, L".log");
}

bool IsTooOld(std::uint64_t lastWrite, std::uint64_t now) {
  return now > lastWrite && now - lastWrite > kMaxAge;
}

void CapLogFiles(std::vector<LogFile> files, const std::function<bool(const std::wstring& path)>& remove) {
  std::uint64_t total = 0;
  for (const LogFile& file : files)
    total += file.bytes;
  std::ranges::stable_sort(files, {}, &LogFile::lastWrite);
  for (const LogFile& file : files) {
    if (total <= kMaxLogBytes) return;
    if (remove(file.path)) total -= std::min(total, file.bytes);
  }
}

}  // namespace qv
