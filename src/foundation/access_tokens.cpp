#include "foundation/access_tokens.h"

#include "foundation/json_text.h"

namespace qv {
namespace {

std::wstring& ProcessToken() {
  static std::wstring token;
  return token;
}

std::wstring WithoutValueOf(std::wstring_view message, std::wstring_view key) {
  const std::wstring needle = JsonKeyNeedle(key);
  std::wstring out;
  std::size_t copied = 0;
  for (std::size_t at = message.find(needle); at != std::wstring_view::npos; at = message.find(needle, at)) {
    at += needle.size();
    const std::size_t colon = message.find_first_not_of(L" \t\r\n", at);
    if (colon == std::wstring_view::npos || message[colon] != L':') continue;
    // The lenient reader takes a string inside an array or object for the token as well.
    const std::size_t quote = message.find_first_not_of(L" \t\r\n:[{", colon);
    if (quote == std::wstring_view::npos || message[quote] != L'"') continue;
    out += message.substr(copied, quote + 1 - copied);
    static_cast<void>(JsonDecodeString(message, quote + 1, &copied));
    at = copied;
  }
  out += message.substr(copied);
  return out;
}

}  // namespace

const std::wstring& NativeAccessToken::Get() {
  return ProcessToken();
}

void NativeAccessToken::Set(std::wstring_view token) {
  ProcessToken() = token;
}

void NativeAccessToken::Clear() {
  ProcessToken().clear();
}

bool AccessTokens::Store(std::wstring_view token) {
  if (token.empty() && !pane_.empty()) return false;
  pane_ = token;
  transport_ = token;
  NativeAccessToken::Set(token);
  if (listener_) listener_(pane_);
  return true;
}

void AccessTokens::SignOut() {
  NativeAccessToken::Clear();
  if (listener_) listener_({});
}

std::wstring TokenOfMessage(std::wstring_view message) {
  std::wstring token = JsonGetString(message, L"accessToken");
  return token.empty() ? JsonGetString(message, L"token") : token;
}

std::wstring WithoutTokens(std::wstring_view message) {
  return WithoutValueOf(WithoutValueOf(message, L"accessToken"), L"token");
}

}  // namespace qv
