#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// Task-pane width in points that is used when none is stored.
inline constexpr int kDefaultPaneWidthPt = 520;
inline constexpr int kMinPaneWidthPt = 240;
inline constexpr int kMaxPaneWidthPt = 1600;

/// The stored "paneWidthPt" of a settings text; nothing when it is absent or outside 240–1600.
[[nodiscard]] std::optional<int> StoredPaneWidth(std::wstring_view settingsJson);

/// The same, or the default.
[[nodiscard]] int PaneWidthFrom(std::wstring_view settingsJson);

/// The stored "uiLang", when present and not empty.
[[nodiscard]] std::optional<std::wstring> UiLangFrom(std::wstring_view settingsJson);

/// `settingsJson` with the member set to a JSON value text (a number, or a quoted string): replaced in place,
/// added as the last member, or in a new object when the text holds none. Other members are kept as they
/// stand.
[[nodiscard]] std::wstring WithSetting(std::wstring_view settingsJson, std::wstring_view key,
                                       std::wstring_view valueText);

/// UI language code for a Windows language id; "en" for a language without a table or an id of 0.
[[nodiscard]] std::wstring LanguageForId(unsigned languageId);

}  // namespace qv
