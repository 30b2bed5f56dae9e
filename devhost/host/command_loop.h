#pragma once

#include <windows.h>

#include "host/command_runner.h"
#include "host/line_reader.h"

namespace qv::devhost {

/// The host's message loop. Lines reach the runner through a window of its own, so that they are taken in
/// every loop of this thread: also in that of a message box which the add-in has opened. UI thread.
class CommandLoop {
 public:
  /// What the end of the input means: the end of the host, or nothing while its windows are open.
  enum class InputEnd { kQuits, kIsIgnored };

  /// The host and the runner are borrowed. `input` is read until its end. Throws std::runtime_error when
  /// there is no window.
  CommandLoop(DevelopmentHost& host, CommandRunner& runner, HANDLE input, InputEnd inputEnd);
  CommandLoop(const CommandLoop&) = delete;
  CommandLoop& operator=(const CommandLoop&) = delete;
  ~CommandLoop();

  /// Until the runner has finished or the user has closed the last window.
  void Run();

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  void Handle(UINT message, WPARAM timer);
  /// Runs what waits; `loop` is the one that has dispatched the message at hand.
  void Serve(CommandRunner::Loop loop);
  void ServeLines(CommandRunner::Loop loop);
  void Dispatch(const MSG& message);

  DevelopmentHost& host_;
  CommandRunner& runner_;
  InputEnd inputEnd_;
  HWND window_ = nullptr;
  LineReader reader_;
  /// Whether `Run` is dispatching a message that is not of this window: then whoever dispatches one of this
  /// window is another loop.
  bool isForeign_ = false;
  int depth_ = 0;
};

}  // namespace qv::devhost
