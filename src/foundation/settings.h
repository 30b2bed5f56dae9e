#pragma once

#include <string>
#include <string_view>

#include "foundation/file_io.h"

namespace qv {

// The user's few settings in one small JSON file shared by all hosts. Host UI thread. Reading never fails
// (defaults); saving reports success, and a failed save leaves the old file as it was.

/// Full path of the settings file; empty when no application-data folder is available. Creates the folder.
[[nodiscard]] const std::wstring& GetSettingsPath();

/// The whole settings text, empty when there is no file.
[[nodiscard]] std::wstring ReadSettingsText();

/// Task-pane width in points, always within 240–1600.
[[nodiscard]] int LoadPaneWidthPt();
[[nodiscard]] bool SavePaneWidthPt(int points);

/// True when the file holds a non-empty language code.
[[nodiscard]] bool LoadUiLang(std::wstring& code);
[[nodiscard]] bool SaveUiLang(std::wstring_view code);

/// The effective UI language: the stored one, else one chosen from the host's language once per process;
/// while no host is connected, from the user's.
[[nodiscard]] std::wstring GetUiLanguage();

/// Forgets the automatic choice, so that the next `GetUiLanguage` decides anew.
void ForgetAutomaticLanguage();

}  // namespace qv
