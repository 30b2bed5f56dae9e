#pragma once

#include <windows.h>

#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace qv::devhost {

/// When an engine was at work for its caller, so that a measurement can tell the host's time from the
/// add-in's. One thread.
class BusyIntervals {
 public:
  /// Milliseconds since 1970, on the clock that other processes of the machine see too.
  [[nodiscard]] static double Now() {
    FILETIME time{};
    GetSystemTimePreciseAsFileTime(&time);
    const ULONGLONG ticks = static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    constexpr ULONGLONG kUnixEpoch = 116'444'736'000'000'000;  // 1970 in 100 ns since 1601
    return static_cast<double>(ticks - kUnixEpoch) / 10'000.0;
  }

  void Add(double start, double end) { intervals_.emplace_back(start, end); }
  void Clear() { intervals_.clear(); }
  /// [[start, end], …] in call order.
  [[nodiscard]] nlohmann::json ToJson() const { return intervals_; }

 private:
  std::vector<std::pair<double, double>> intervals_;
};

}  // namespace qv::devhost
