#pragma once

#include <string_view>

namespace qv {

/// Where the first-run welcome keeps that it was shown: the value that is read back.
inline constexpr wchar_t kWelcomeShownValue[] = L"WelcomeShown";

/// The value that is written besides it for a host, "excel", "wps", "wps-excel" or "et" in any case; every
/// other text counts as Word, which shares the key.
[[nodiscard]] const wchar_t* WelcomeValueOfHost(std::wstring_view host);

/// What the system says about the host's window and the one in front of all programs.
struct HostWindowFacts {
  bool isWindow = false;
  bool isVisible = false;
  bool isMinimised = false;
  bool hasForeground = false;
  /// The window in front runs on the host window's thread.
  bool sharesThread = false;
  /// The window in front is the host window, or a part of it.
  bool isForegroundRoot = false;
};

/// Whether the user is looking at the host: a box over another program, or over nothing, would only disturb.
[[nodiscard]] bool IsInFront(const HostWindowFacts& facts);

}  // namespace qv
