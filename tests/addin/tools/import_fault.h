#pragma once

#include <windows.h>

namespace qv::test {

/// Replaces a function that this program imports from a library of the system, as long as it lives: what the
/// code under test calls is the test's own. One at a time for each function.
class ImportFault {
 public:
  /// `library` as in "gdi32.dll". Adds a failure to the running test when nothing is imported by that name.
  ImportFault(const char* library, const char* function, FARPROC replacement);
  ImportFault(const ImportFault&) = delete;
  ImportFault& operator=(const ImportFault&) = delete;
  ~ImportFault();

 private:
  ULONGLONG* slot_;
  ULONGLONG former_ = 0;
};

}  // namespace qv::test
