#include "host/command_runner.h"

#include <exception>

#include "engines/common/com_guard.h"
#include "foundation/flag_scope.h"
#include "host/open_box.h"

namespace qv::devhost {

CommandRunner::CommandRunner(DevelopmentHost& host, Answer answer)
    : context_{host, GetTickCount64(), 0, {}}, answer_(std::move(answer)) {}

void CommandRunner::Take(const InputLine& line, Loop loop) {
  queue_.push_back(line);
  Advance(loop);
}

void CommandRunner::Advance(Loop loop) {
  // A command may dispatch messages, and with them comes the next call of this function.
  while (!running_ && !finished_) {
    if (!RunNext(loop)) return;
    RunAfterwards();
  }
}

bool CommandRunner::RunNext(Loop loop) {
  const FlagScope running(running_);
  if ((pending_ && !TryFinishPending()) || queue_.empty()) return false;
  const InputLine line = queue_.front();
  if (!Run(line, loop)) return false;
  queue_.pop_front();
  return true;
}

void CommandRunner::RunAfterwards() {
  // It is not part of the command any more: lines that come meanwhile are taken, and a failure of it has no
  // answer that could tell it.
  const auto work = std::exchange(context_.afterwards, nullptr);
  if (work) static_cast<void>(GuardCom([&] { return work(), S_OK; }));
}

bool CommandRunner::Run(const InputLine& line, Loop loop) {
  const HWND box = loop == Loop::kForeign ? FindOpenBox() : nullptr;
  // A loop of the add-in without a box is a short one.
  if (loop == Loop::kForeign && box == nullptr) return false;
  if (line.kind == InputLine::Kind::kEnd) {
    if (box != nullptr) {
      DismissBox(box);
      return false;
    }
    static_cast<void>(context_.host.End());
    return finished_ = true;
  }
  if (line.kind == InputLine::Kind::kTooLong) {
    answer_(ErrorAnswer("the line is longer than " + std::to_string(kMaximumLineBytes) + " bytes"));
    return true;
  }
  std::string error;
  const auto command = ParseCommand(line.text, error);
  if (command && box != nullptr && !command->isSafeInBoxes)
    error = "\"" + command->name + "\" cannot run while a box is open: \"answer\" it first";
  if (!error.empty()) {
    answer_(ErrorAnswer(error));
  } else {
    Execute(*command);
  }
  return true;
}

void CommandRunner::Execute(const Command& command) {
  try {
    if (command.name == "quit") return answer_(Quit());
    Outcome outcome = AllCommands().at(command.name)(context_, command.members);
    if (auto* answer = std::get_if<Json>(&outcome)) return answer_(*answer);
    pending_ = std::move(std::get<PendingAnswer>(outcome));
  } catch (const std::exception& failure) {
    answer_(ErrorAnswer(failure.what()));
  }
}

bool CommandRunner::TryFinishPending() {
  std::optional<Json> answer;
  try {
    answer = pending_->poll();
    if (!answer && GetTickCount64() < pending_->deadline) return false;
    if (!answer) answer = pending_->timedOut();
  } catch (const std::exception& failure) {
    answer = ErrorAnswer(failure.what());
  }
  pending_.reset();
  answer_(*answer);
  return true;
}

Json CommandRunner::Quit() {
  const auto ending = context_.host.End();
  finished_ = true;
  Json answer = OkAnswer();
  if (!ending.Clean()) answer = ErrorAnswer("the add-in left something behind");
  answer["liveObjects"] = ending.liveObjects;
  answer["canUnload"] = ending.canUnload;
  answer["eventSinks"] = ending.eventSinks;
  answer["wrongThread"] = ending.wrongThread;
  answer["addinReferences"] = ending.addinReferences;
  answer["paneReferences"] = ending.paneReferences;
  answer["siteReferences"] = ending.siteReferences;
  answer["webViewObjects"] = ending.webViewObjects;
  return answer;
}

}  // namespace qv::devhost
