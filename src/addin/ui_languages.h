#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qv {

/// A display language that the user can choose.
struct UiLanguage {
  /// As the settings store it.
  const wchar_t* code;
  /// In its own language, for those who cannot read the current one.
  const wchar_t* name;
};

/// All of them in the order in which they are offered.
[[nodiscard]] std::span<const UiLanguage> UiLanguages();

/// Place of a code in the list, from 0; nothing for a code that is not offered.
[[nodiscard]] std::optional<int> UiLanguageRow(std::wstring_view code);

/// Whether a language is written from right to left.
[[nodiscard]] bool IsRightToLeft(std::wstring_view code);

/// What an open panel is told when the user has chosen a language.
[[nodiscard]] std::wstring UiLangChangedMessage(std::wstring_view code);

}  // namespace qv
