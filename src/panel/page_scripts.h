#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

// Texts that the panel sends to its page besides those of a translation run.

/// The message that hands the signed-in user's token to the page.
[[nodiscard]] std::wstring AccessTokenMessage(std::wstring_view token);

/// The message that lists the installed font families.
[[nodiscard]] std::wstring FontListMessage(const std::vector<std::wstring>& families);

/// Answer data of "docKeyGet" and "uiLangGet".
[[nodiscard]] std::wstring DocKeyData(std::wstring_view docKey);
[[nodiscard]] std::wstring UiLangData(std::wstring_view language);

/// Tells the page that the workspace window was opened, or that it was closed.
inline constexpr std::wstring_view kWorkspaceOpenScript =
    L"if(window.quorvantisOnWorkspaceOpen)window.quorvantisOnWorkspaceOpen();";
inline constexpr std::wstring_view kWorkspaceClosedScript =
    L"if(window.quorvantisOnWorkspaceClosed)window.quorvantisOnWorkspaceClosed();";

/// The message and the script that switch a loaded translation page to a mode, "full" or "selection". They go
/// together, the message first.
[[nodiscard]] std::wstring SetModeMessage(std::wstring_view mode);
[[nodiscard]] std::wstring SetModeScript(std::wstring_view mode);

/// What the log says when the browser could not start; a null step is written as "init".
[[nodiscard]] std::wstring WebViewFailureText(const wchar_t* step, std::int32_t hr);

}  // namespace qv
