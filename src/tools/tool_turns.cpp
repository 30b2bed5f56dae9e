#include "tools/tool_turns.h"

#include "foundation/guard.h"

namespace qv {

void ToolTurns::Run(Call call) {
  if (closed_) return;
  waiting_.push_back(std::move(call));
  RunNext();
}

void ToolTurns::Close() {
  closed_ = true;
  waiting_.clear();
}

void ToolTurns::RunNext() {
  while (!running_ && !waiting_.empty()) {
    RunOldest();
    // As a task of its own, so that the host has its turn in between; a refused one costs it that only.
    if (waiting_.empty() || pane_->Tasks().PostFunction([this] { RunNext(); })) return;
  }
}

void ToolTurns::RunOldest() {
  running_ = true;
  const Call call = std::move(waiting_.front());
  waiting_.pop_front();
  Guard(L"ToolTurns", call);
  running_ = false;
}

}  // namespace qv
