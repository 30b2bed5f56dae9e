#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qv {

/// How a coding agent reaches the models: the local proxy's address and the key that it asks for.
struct ProxyAccess {
  /// Without a slash at its end; empty for `kDefaultProxyUrl`.
  std::wstring baseUrl;
  /// Kept out of logs and answers.
  std::wstring token;
};

inline constexpr std::wstring_view kDefaultProxyUrl = L"http://127.0.0.1:7879/v1";

/// The whole "opencode.json" of the agent workspace.
[[nodiscard]] std::wstring OpenCodeConfig(const ProxyAccess& access);

/// Whether the file names the tool server's address with the expected port.
[[nodiscard]] bool OpenCodePointsAtMcpServer(std::string_view json);

using EnvironmentVariables = std::vector<std::pair<std::wstring, std::wstring>>;

/// What OpenCode is told through its environment. `configPath` is the full path of "opencode.json".
[[nodiscard]] EnvironmentVariables OpenCodeEnvironment(const ProxyAccess& access,
                                                       std::wstring_view configPath);

}  // namespace qv
