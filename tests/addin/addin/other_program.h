#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace qv {

/// Runs tests of this program in a process of their own, as a program of another name (such as "et.exe", for
/// what depends on the host's) on a screen of another DPI (Wine reads it when a process starts). The output
/// of a run that does not pass becomes the failure's text.
[[nodiscard]] testing::AssertionResult PassesElsewhere(const std::wstring& program, int dpi,
                                                       const std::wstring& filter);

/// Windows that this thread makes meanwhile see the screen's DPI, as those of a host do.
class DpiAware {
 public:
  DpiAware() : before_(SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE)) {}
  DpiAware(const DpiAware&) = delete;
  DpiAware& operator=(const DpiAware&) = delete;
  ~DpiAware() { SetThreadDpiAwarenessContext(before_); }

 private:
  DPI_AWARENESS_CONTEXT before_;
};

}  // namespace qv
