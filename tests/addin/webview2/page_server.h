#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace qv::test {

/// Serves pages on 127.0.0.1 for a browser, which opens connections as it likes. Stops when it goes away; a
/// connection that says nothing is given up soon.
class PageServer {
 public:
  /// By path ("/a"): the answer, byte for byte. An empty one closes the connection, and a path that is not
  /// listed is never answered.
  explicit PageServer(std::map<std::string, std::string> answers);
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;
  ~PageServer();

  [[nodiscard]] std::wstring Url(const std::wstring& path) const;
  /// Whether the path was asked for.
  [[nodiscard]] bool WasAsked(const std::string& path);

 private:
  void Serve();
  void Answer(std::uintptr_t connection);

  std::map<std::string, std::string> answers_;
  std::uint16_t port_ = 0;
  std::uintptr_t listener_;
  std::atomic<bool> stopping_{false};
  std::mutex mutex_;
  std::vector<std::string> asked_;
  /// Connections that wait for an answer in vain.
  std::vector<std::uintptr_t> held_;
  std::thread thread_;
};

/// A port of 127.0.0.1 that nothing listens on.
[[nodiscard]] std::uint16_t ClosedPort();

/// An answer with this HTML text, "200 OK" unless another status is given.
[[nodiscard]] std::string Html(const std::string& text, const std::string& status = "200 OK");

}  // namespace qv::test
