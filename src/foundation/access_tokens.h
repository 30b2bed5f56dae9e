#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace qv {

/// The process-wide copy of the signed-in user's bearer token. Written on the host UI thread only; workers
/// get copies before they start. Never logged, only its length is.
class NativeAccessToken {
 public:
  [[nodiscard]] static const std::wstring& Get();
  static void Set(std::wstring_view token);
  static void Clear();
};

/// The token's copies that belong to one pane: its own, and the one that its translations use. They can
/// differ from the process-wide one, which alone is emptied when the page signs out. Host UI thread.
class AccessTokens {
 public:
  [[nodiscard]] const std::wstring& Pane() const { return pane_; }
  [[nodiscard]] const std::wstring& Transport() const { return transport_; }

  /// Stores a token delivered by the page into every copy. An empty token is ignored while the pane holds
  /// one: returns false then.
  [[nodiscard]] bool Store(std::wstring_view token);

  /// The page has signed out: empties the process-wide copy. The pane keeps its own for a run under way.
  void SignOut();

  /// Called with every stored token, and with an empty one at a sign-out; a running local service takes its
  /// copy under its own lock.
  void OnStore(std::function<void(const std::wstring&)> listener) { listener_ = std::move(listener); }

 private:
  std::wstring pane_;
  std::wstring transport_;
  std::function<void(const std::wstring&)> listener_;
};

/// The token that a message of the page carries: "accessToken", else "token"; empty for none.
[[nodiscard]] std::wstring TokenOfMessage(std::wstring_view message);

/// A message text with the values of "accessToken" and "token" blanked, fit for a log.
[[nodiscard]] std::wstring WithoutTokens(std::wstring_view message);

}  // namespace qv
