#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace qv::bench {

/// Milliseconds that `body` takes.
template <typename Body>
[[nodiscard]] double Milliseconds(Body&& body) {
  const auto start = std::chrono::steady_clock::now();
  body();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// The value that `share` (0 to below 1) of the values lie below. There must be at least one value.
[[nodiscard]] inline double Quantile(std::vector<double> values, double share) {
  const auto index = static_cast<std::size_t>(share * static_cast<double>(values.size()));
  std::ranges::sort(values);
  return values[index];
}

[[nodiscard]] inline double Median(std::vector<double> values) {
  return Quantile(std::move(values), 0.5);
}

/// Prints one row of the table: "name<TAB>value<TAB>unit".
inline void Row(const std::string& name, double value, const char* unit) {
  std::printf("%s\t%.2f\t%s\n", name.c_str(), value, unit);
}

/// Prints the line without which none of the rows is believed: under Wine a crash can exit with status 0.
inline void End() {
  std::puts("end");
}

}  // namespace qv::bench
