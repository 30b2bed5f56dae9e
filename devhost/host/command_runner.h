#pragma once

#include <deque>
#include <functional>
#include <optional>

#include "host/command.h"
#include "host/line_reader.h"

namespace qv::devhost {

/// Carries out the commands of the line protocol one after the other. UI thread. A command that fails is
/// answered with its error and has changed nothing.
class CommandRunner {
 public:
  using Answer = std::function<void(const Json&)>;
  /// From where the runner is called: the host's own loop, or a loop that somebody below it runs.
  enum class Loop { kOwn, kForeign };

  /// The host is borrowed; every command is answered exactly once through `answer`.
  CommandRunner(DevelopmentHost& host, Answer answer);

  /// Takes one line. A command that has to wait lets the later ones queue.
  void Take(const InputLine& line, Loop loop = Loop::kOwn);
  /// Looks whether a waiting command can be answered, and goes on with the queue. Call it after every
  /// message. In a foreign loop nothing runs but, while it is that of a box, what is safe there.
  void Advance(Loop loop = Loop::kOwn);
  /// True while `Advance` has to be called from time to time even without messages.
  [[nodiscard]] bool IsWaiting() const { return pending_ || !queue_.empty(); }
  /// True once "quit" or the end of the input was reached; then the host has ended.
  [[nodiscard]] bool IsFinished() const { return finished_; }

 private:
  /// Finishes the waiting command, or runs the next line; false when neither can be done now.
  [[nodiscard]] bool RunNext(Loop loop);
  /// Whether the first line is done with; otherwise it stays.
  [[nodiscard]] bool Run(const InputLine& line, Loop loop);
  void Execute(const Command& command);
  [[nodiscard]] bool TryFinishPending();
  void RunAfterwards();
  [[nodiscard]] Json Quit();

  CommandContext context_;
  Answer answer_;
  std::deque<InputLine> queue_;
  std::optional<PendingAnswer> pending_;
  bool running_ = false;
  bool finished_ = false;
};

}  // namespace qv::devhost
