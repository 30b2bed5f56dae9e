#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "host/development_host.h"
#include "host/line_reader.h"
#include "host/protocol.h"

namespace qv::devhost {

/// Carries out the commands of the line protocol one after the other. UI thread. A command that fails is
/// answered with its error and has changed nothing.
class CommandRunner {
 public:
  using Answer = std::function<void(const Json&)>;

  /// The host is borrowed; every command is answered exactly once through `answer`.
  CommandRunner(DevelopmentHost& host, Answer answer);

  /// Takes one line. A command that has to wait lets the later ones queue.
  void Take(const InputLine& line);
  /// Looks whether a waiting command can be answered, and goes on with the queue. Call it after every
  /// message.
  void Advance();
  /// Milliseconds until `Advance` has something to do by itself; INFINITE when it has not.
  [[nodiscard]] DWORD NextWake() const;
  /// True once "quit" or the end of the input was reached; then the host has ended.
  [[nodiscard]] bool IsFinished() const { return finished_; }

 private:
  /// A command under way that waits for a script or posted JSON.
  struct Wait {
    std::wstring part;
    ULONGLONG started;
    ULONGLONG deadline;
  };

  void Run(const InputLine& line);
  [[nodiscard]] std::optional<Json> Execute(const Command& command);
  [[nodiscard]] bool TryFinishWait();
  [[nodiscard]] Json Quit();

  [[nodiscard]] Json Post(const Json& members);
  [[nodiscard]] Json Scripts() const;
  [[nodiscard]] Json Counters() const;
  [[nodiscard]] Json Panes() const;
  [[nodiscard]] Json Describe(const PageItem& item) const;
  [[nodiscard]] std::uint32_t ViewFor(const Json& members) const;

  DevelopmentHost& host_;
  Answer answer_;
  ULONGLONG started_ = GetTickCount64();
  std::deque<InputLine> queue_;
  std::optional<Wait> wait_;
  /// 0-based index of the first item that no wait has answered or passed over yet.
  std::uint64_t cursor_ = 0;
  bool running_ = false;
  bool finished_ = false;
};

}  // namespace qv::devhost
