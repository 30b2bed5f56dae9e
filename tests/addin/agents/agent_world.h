#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>

#include "scratch_folder.h"

namespace qv {

/// A user's profile and search path of the test's own, in a folder whose name has a space and letters beyond
/// ASCII. The process's environment is put back.
class AgentWorld : public testing::Test {
 protected:
  AgentWorld();
  ~AgentWorld() override;

  [[nodiscard]] std::wstring Profile() const { return scratch_.Path(L"\u00FCser \u4E2D"); }
  [[nodiscard]] std::wstring Programs() const { return scratch_.Path(L"pro grams \u4E2D"); }
  [[nodiscard]] std::wstring In(std::wstring_view name) const { return scratch_.Path(name); }

  /// A null value takes the variable away.
  void SetVariable(const wchar_t* name, const wchar_t* value);
  void SetVariable(const wchar_t* name, const std::wstring& value) { SetVariable(name, value.c_str()); }

  /// Puts the test agent onto the search path under this name.
  std::wstring AddProgram(std::wstring_view name) const;
  /// A batch file of this name that runs the test agent.
  std::wstring AddBatch(std::wstring_view name) const;

  /// What has been logged since the test began.
  [[nodiscard]] std::wstring Log() const;

 private:
  ScratchFolder scratch_;
  std::map<std::wstring, std::wstring> former_;
  std::size_t logged_ = 0;
};

/// An add-in that has a copy of OpenCode of its own, one folder down.
class OwnCopy {
 public:
  OwnCopy();
  OwnCopy(const OwnCopy&) = delete;
  OwnCopy& operator=(const OwnCopy&) = delete;
  ~OwnCopy();

  [[nodiscard]] static std::wstring Path();
};

/// Runs this thread's messages until the condition holds; false after the limit.
[[nodiscard]] bool PumpUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds limit = std::chrono::seconds(30));

/// The bytes of the program that plays an agent.
[[nodiscard]] const std::string& TestAgentBytes();

}  // namespace qv
