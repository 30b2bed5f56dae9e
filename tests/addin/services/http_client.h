#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qv {

/// A connection to 127.0.0.1 on which tests say whatever they like. Waits ten seconds at most for anything;
/// what is read then ends in "(still open)".
class HttpClient {
 public:
  explicit HttpClient(std::uint16_t port);
  HttpClient(const HttpClient&) = delete;
  HttpClient& operator=(const HttpClient&) = delete;
  ~HttpClient();

  [[nodiscard]] bool IsConnected() const { return connected_; }
  /// False once the other side is gone.
  bool Send(std::string_view bytes);
  /// Whether there is something to read, or the connection has ended.
  [[nodiscard]] bool HasNews() const;
  /// Received text up to and including `end`; what there is when the connection ends first.
  [[nodiscard]] std::string ReadUntil(std::string_view end);
  /// Everything up to the end of the connection.
  [[nodiscard]] std::string ReadToEnd();
  /// One answer with a Content-Length, or none at all.
  [[nodiscard]] std::string ReadAnswer();
  /// Ends the connection the hard way: the other side sees it cut.
  void Cut();

 private:
  bool ReceiveMore();

  std::uintptr_t socket_;
  bool connected_ = false;
  std::string received_;
};

/// A request of one go on a connection of its own; the whole answer.
[[nodiscard]] std::string Ask(std::uint16_t port, std::string_view request);

/// "GET <path>" with the headers that are needed.
[[nodiscard]] std::string GetText(std::string_view path);
/// "POST <path>" with a body.
[[nodiscard]] std::string PostText(std::string_view path, std::string_view body,
                                   std::string_view headers = {});

[[nodiscard]] std::string BodyOf(const std::string& answer);

/// Whether the condition becomes true within ten seconds.
[[nodiscard]] bool Eventually(const std::function<bool()>& condition);

/// Sets a variable of the environment for the time of its life.
class EnvironmentScope {
 public:
  EnvironmentScope(const wchar_t* name, const wchar_t* value);
  EnvironmentScope(const EnvironmentScope&) = delete;
  EnvironmentScope& operator=(const EnvironmentScope&) = delete;
  ~EnvironmentScope();

 private:
  const wchar_t* const name_;
};

}  // namespace qv
