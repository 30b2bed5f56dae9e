#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace qv::devhost {

/// One line of standard input.
struct InputLine {
  enum class Kind { kText, kTooLong, kEnd };
  Kind kind;
  /// Without the line end; empty for the other kinds.
  std::string text;
};

/// Reads lines on a thread of its own, so that the UI thread never waits for whoever drives the host. The
/// thread is left alone at the end: it may sit in a read that only the end of the process takes away.
class LineReader {
 public:
  /// `input` is borrowed; it is read until its end. `onLine` is called on the reading thread after each line,
  /// and must not throw.
  LineReader(HANDLE input, std::function<void()> onLine);

  /// The next line in order, the last one of kind `kEnd`; nothing when none waits.
  [[nodiscard]] std::optional<InputLine> Take();

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace qv::devhost
