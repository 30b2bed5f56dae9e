#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/https_client.h"

namespace qv {

/// An exchange with the service on a thread of its own, read as it comes by one other thread. The service may
/// say nothing for minutes, and a call of WinHTTP that waits for it cannot be ended safely from outside; so
/// whoever reads is called off instead, and the thread ends by itself at the service's next word.
class UpstreamExchange {
 public:
  /// One whose thread cannot be started has failed with the system's code.
  [[nodiscard]] static std::shared_ptr<UpstreamExchange> Start(HttpRequest request);

  /// Waits for status and Content-Type of the answer; nothing when there is none, see `Outcome`.
  [[nodiscard]] std::optional<HttpResponse> WaitForHead();

  /// Waits for what comes next of the body, 16 KiB at most. False at the body's end, however it came. As much
  /// again is read meanwhile, and no more.
  [[nodiscard]] bool NextPiece(std::string& piece);

  /// How it ended, without the body; for after the end.
  [[nodiscard]] HttpResponse Outcome();

  /// Nobody reads any more: lets the one who waits go, and the exchange as soon as it can. From any thread.
  void CallOff();

 private:
  void Run(const HttpRequest& request);
  [[nodiscard]] bool TakeHead(const HttpResponse& head);
  [[nodiscard]] bool TakePiece(std::string_view piece);

  class Lock;

  // The system's own: those of the standard library cost MinGW several calls of the kernel for each piece.
  SRWLOCK lock_ = SRWLOCK_INIT;
  CONDITION_VARIABLE changed_ = CONDITION_VARIABLE_INIT;
  bool calledOff_ = false;
  std::optional<HttpResponse> head_;
  /// What is not read yet.
  std::string piece_;
  std::optional<HttpResponse> outcome_;
};

}  // namespace qv
