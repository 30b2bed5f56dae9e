#pragma once

#include <winsock2.h>

#include <optional>
#include <string>

#include "foundation/unique_handle.h"

namespace qv::devhost::calc {

struct SocketTraits {
  using Type = SOCKET;
  static Type None() { return INVALID_SOCKET; }
  static void Close(Type handle) { closesocket(handle); }
};
using UniqueSocket = UniqueHandle<SocketTraits>;

/// The wire to the office's object server: one line out, one line back. One thread.
class OfficeConnection {
 public:
  /// Connects to 127.0.0.1. Throws std::runtime_error when nobody listens there.
  explicit OfficeConnection(unsigned short port);
  OfficeConnection(const OfficeConnection&) = delete;
  OfficeConnection& operator=(const OfficeConnection&) = delete;
  ~OfficeConnection();

  /// Sends `line` (without its end) and waits for the answer, at most two minutes. Nothing when the office is
  /// gone or silent; from then on every exchange fails at once.
  [[nodiscard]] std::optional<std::string> Exchange(const std::string& line);

 private:
  [[nodiscard]] bool SendAll(const std::string& data);
  [[nodiscard]] std::optional<std::string> ReceiveLine();

  UniqueSocket socket_;
  std::string received_;
};

}  // namespace qv::devhost::calc
