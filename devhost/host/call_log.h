#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace qv::devhost {

/// What the host and the add-in said to each other, one line a call in order, for diagnosis and tests.
class CallLog {
 public:
  /// With `echo` every line also goes to standard error.
  explicit CallLog(bool echo = false) : echo_(echo) {}

  void Add(std::string line);
  /// Adds "call -> 0x…" and gives the code back.
  HRESULT Add(const std::string& call, HRESULT result);
  /// The same, and throws std::runtime_error with the line when the code is a failure.
  void Require(const std::string& call, HRESULT result);

  [[nodiscard]] const std::vector<std::string>& Lines() const { return lines_; }

 private:
  bool echo_;
  std::vector<std::string> lines_;
};

/// "0x" and eight hexadecimal digits.
[[nodiscard]] std::string HresultText(HRESULT result);

}  // namespace qv::devhost
