#pragma once

#include <compare>
#include <optional>
#include <string>

namespace qv::devhost {

/// Which browser runs, and on which profile. Browsers with equal options are one and the same.
struct BrowserOptions {
  /// What the add-in asked for. It only tells profiles apart: each is a scratch folder of this process.
  std::wstring userDataFolder;
  /// Unix path of the program.
  std::wstring program;
  /// Base64 SHA-256 hashes of public keys, separated by commas, whose certificates are accepted; empty for
  /// none.
  std::wstring trustedKeys;

  auto operator<=>(const BrowserOptions&) const = default;
};

/// The options for an environment that is made now, or nothing when no browser is wanted:
/// `QV_DEVHOST_BROWSER` is "chromium" for one, `QV_DEVHOST_CHROMIUM` its path and `QV_DEVHOST_BROWSER_SPKI`
/// the trusted keys.
[[nodiscard]] std::optional<BrowserOptions> WantedBrowser(const std::wstring& userDataFolder);

}  // namespace qv::devhost
