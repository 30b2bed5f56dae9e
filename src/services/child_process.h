#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace qv {

struct ChildLimits {
  std::chrono::milliseconds time{5000};
  /// What is printed beyond that is taken from the program and dropped, so that it does not wait for us.
  std::size_t outputBytes = 65'536;
  /// Standard error is kept with the output, rather than dropped.
  bool keepErrors = false;
};

struct ChildRun {
  bool started = false;
  /// False when the time was over; then the program has been ended, with all that it started.
  bool finished = false;
  unsigned long exitCode = 0;
  /// What it printed, also when it did not finish.
  std::string output;

  [[nodiscard]] bool Succeeded() const { return finished && exitCode == 0; }
};

/// Runs a program without a window and waits for it. It has no input and inherits nothing else of this
/// process. `application` is a full path, or empty when the command line begins with one. Worker thread.
[[nodiscard]] ChildRun RunCaptured(const std::wstring& application, std::wstring commandLine,
                                   const ChildLimits& limits = {});

}  // namespace qv
