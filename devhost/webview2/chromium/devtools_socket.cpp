#include "webview2/chromium/devtools_socket.h"

namespace qv::devhost {
namespace {

constexpr int kConnectLimitMs = 5'000;

}  // namespace

std::unique_ptr<DevToolsSocket> DevToolsSocket::Connect(const DevToolsAddress& address) {
  std::unique_ptr<DevToolsSocket> made(new DevToolsSocket());
  made->session_.Reset(WinHttpOpen(L"devhost", WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0));
  // No limit for receiving: a page that has nothing to say is silent for ever.
  WinHttpSetTimeouts(made->session_.Get(), 0, kConnectLimitMs, kConnectLimitMs, 0);
  made->connection_.Reset(WinHttpConnect(made->session_.Get(), L"127.0.0.1", address.port, 0));
  const UniqueInternet request(WinHttpOpenRequest(made->connection_.Get(), L"GET", address.path.c_str(),
                                                  nullptr, nullptr, nullptr, 0));
  if (!WinHttpSetOption(request.Get(), WINHTTP_OPTION_UPGRADE_TO_WEB_SOCKET, nullptr, 0) ||
      !WinHttpSendRequest(request.Get(), nullptr, 0, nullptr, 0, 0, 0) ||
      !WinHttpReceiveResponse(request.Get(), nullptr)) {
    return nullptr;
  }
  made->socket_.Reset(WinHttpWebSocketCompleteUpgrade(request.Get(), 0));
  return made->socket_ ? std::move(made) : nullptr;
}

bool DevToolsSocket::Send(const std::string& message) {
  const std::scoped_lock lock(sending_);
  if (closed_) return false;
  return WinHttpWebSocketSend(socket_.Get(), WINHTTP_WEB_SOCKET_UTF8_MESSAGE_BUFFER_TYPE,
                              const_cast<char*>(message.data()),
                              static_cast<DWORD>(message.size())) == NO_ERROR;
}

std::optional<std::string> DevToolsSocket::Receive() {
  std::string message;
  while (!closed_) {
    DWORD size = 0;
    auto type = WINHTTP_WEB_SOCKET_UTF8_FRAGMENT_BUFFER_TYPE;
    if (WinHttpWebSocketReceive(socket_.Get(), piece_.data(), static_cast<DWORD>(piece_.size()), &size,
                                &type) != NO_ERROR) {
      return std::nullopt;
    }
    message.append(piece_, 0, size);
    if (type == WINHTTP_WEB_SOCKET_UTF8_MESSAGE_BUFFER_TYPE) return message;
    if (type != WINHTTP_WEB_SOCKET_UTF8_FRAGMENT_BUFFER_TYPE) return std::nullopt;
  }
  return std::nullopt;
}

void DevToolsSocket::Close() {
  const std::scoped_lock lock(sending_);
  if (closed_.exchange(true)) return;
  // The handle itself is closed after the receiving thread has ended.
  WinHttpWebSocketShutdown(socket_.Get(), WINHTTP_WEB_SOCKET_SUCCESS_CLOSE_STATUS, nullptr, 0);
}

}  // namespace qv::devhost
