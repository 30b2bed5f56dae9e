#pragma once

#include <windows.h>
#include <winhttp.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "foundation/unique_handle.h"
#include "webview2/chromium/browser_keeper.h"

namespace qv::devhost {

struct InternetTraits {
  using Type = HINTERNET;
  static Type None() { return nullptr; }
  static void Close(Type handle) { WinHttpCloseHandle(handle); }
};
using UniqueInternet = UniqueHandle<InternetTraits>;

/// A WebSocket of text messages to a browser on this machine. One thread receives, any thread sends.
class DevToolsSocket {
 public:
  /// Null when the browser does not answer within seconds.
  [[nodiscard]] static std::unique_ptr<DevToolsSocket> Connect(const DevToolsAddress& address);

  [[nodiscard]] bool Send(const std::string& message);
  /// Waits for the next message; nothing when the connection has ended.
  [[nodiscard]] std::optional<std::string> Receive();
  /// Ends the connection and with it a waiting `Receive`. For another thread than the receiving one.
  void Close();

 private:
  DevToolsSocket() = default;

  UniqueInternet session_;
  UniqueInternet connection_;
  std::mutex sending_;
  UniqueInternet socket_;
  std::atomic<bool> closed_{false};
  std::string piece_ = std::string(std::size_t{1} << 18, '\0');
};

}  // namespace qv::devhost
