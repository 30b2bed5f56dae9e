#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// Error codes that end a run at once or that code compares with; all others only travel through.
inline constexpr std::wstring_view kCodeInsufficientCredits = L"insufficient_credits";
inline constexpr std::wstring_view kCodeUnauthorized = L"unauthorized";
inline constexpr std::wstring_view kCodeCancelled = L"cancelled";
inline constexpr std::wstring_view kCodeNetworkError = L"network_error";

/// What a cancelled request says.
inline constexpr std::wstring_view kMessageCancelled = L"Cancelled";

/// The Chinese short form of "not enough credits", as servers write it into messages.
inline constexpr std::wstring_view kCreditsPhrase = L"积分不足";

/// What the user reads when credits are used up. Its comma is the three Latin-1 readings of U+FF0C's UTF-8
/// bytes: pages compare the message with this very text.
inline constexpr std::wstring_view kCreditsMessage =
    L"积分不足\u00EF\u00BC\u008C请充值或升级套餐后继续翻译。";

/// Code of a failure that came with a message only; empty when no known text occurs in it.
[[nodiscard]] std::wstring_view MapServerError(std::wstring_view message);

/// The message as the user reads it. `context` is put before it unless the message is about credits; an empty
/// message counts as one about credits when the code says so.
[[nodiscard]] std::wstring PolishErrorMessage(std::wstring_view code, std::wstring_view context,
                                              std::wstring_view message);

/// The script that reports a failure to the page. An empty `code` is looked up by the message; the run id is
/// left out when the failure belongs to no run.
[[nodiscard]] std::wstring ShowRunError(std::wstring_view code, std::wstring_view message,
                                        std::optional<std::uint64_t> runId);

}  // namespace qv
