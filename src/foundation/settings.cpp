#include "foundation/settings.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <optional>

#include "foundation/file_replacement.h"
#include "foundation/host_session.h"
#include "foundation/json_text.h"
#include "foundation/settings_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// The file is expected to hold a few hundred bytes; a larger one is not ours to read or replace.
constexpr std::size_t kMaxSettingsBytes = std::size_t{1} << 20;

std::optional<std::wstring>& AutomaticLanguage() {
  static std::optional<std::wstring> code;
  return code;
}

std::wstring ChooseSettingsPath() {
  std::wstring base = ShellFolder(CSIDL_LOCAL_APPDATA);
  if (base.empty()) base = ShellFolder(CSIDL_APPDATA);
  if (base.empty()) return {};
  const std::wstring folder = base + L"\\Quorvantis";
  CreateDirectoryW(folder.c_str(), nullptr);
  return folder + L"\\config.json";
}

FileRead ReadSettingsBytes(std::string& bytes) {
  if (!GetSettingsPath().empty()) return ReadWholeFile(GetSettingsPath(), bytes, kMaxSettingsBytes);
  bytes.clear();
  return FileRead::kMissing;
}

std::wstring BytesAsUnits(std::string_view bytes) {
  std::wstring units;
  units.reserve(bytes.size());
  for (const char byte : bytes)
    units += static_cast<wchar_t>(static_cast<unsigned char>(byte));
  return units;
}

std::string UnitsAsBytes(std::wstring_view units) {
  std::string bytes;
  bytes.reserve(units.size());
  for (const wchar_t unit : units)
    bytes += static_cast<char>(unit);
  return bytes;
}

bool SaveSetting(std::wstring_view key, const std::wstring& valueText) {
  std::string bytes;
  if (GetSettingsPath().empty() || ReadSettingsBytes(bytes) == FileRead::kFailed) return false;
  // Done byte by byte, so that what others wrote stays even where it is no valid UTF-8.
  const std::wstring changed = WithSetting(BytesAsUnits(bytes), key, BytesAsUnits(ToUtf8(valueText)));
  return WriteFileAtomically(GetSettingsPath(), UnitsAsBytes(changed));
}

std::wstring AutomaticLanguageNow() {
  unsigned id = HostSession::Get().HostLanguageId();
  if (id == 0) id = GetUserDefaultUILanguage();
  return LanguageForId(id);
}

}  // namespace

const std::wstring& GetSettingsPath() {
  static const std::wstring path = ChooseSettingsPath();
  return path;
}

std::wstring ReadSettingsText() {
  std::string bytes;
  return ReadSettingsBytes(bytes) == FileRead::kRead ? FromUtf8(bytes) : std::wstring();
}

int LoadPaneWidthPt() {
  return PaneWidthFrom(ReadSettingsText());
}

bool SavePaneWidthPt(int points) {
  return SaveSetting(L"paneWidthPt", Concat(points));
}

bool LoadUiLang(std::wstring& code) {
  code = UiLangFrom(ReadSettingsText()).value_or(std::wstring());
  return !code.empty();
}

bool SaveUiLang(std::wstring_view code) {
  return SaveSetting(L"uiLang", JsonQuote(code));
}

std::wstring GetUiLanguage() {
  std::wstring stored;
  if (LoadUiLang(stored)) {
    ForgetAutomaticLanguage();
    return stored;
  }
  std::optional<std::wstring>& automatic = AutomaticLanguage();
  if (automatic) return *automatic;
  std::wstring chosen = AutomaticLanguageNow();
  // A host may ask for labels before it connects; what is guessed then must not outlive the moment.
  if (HostSession::Get().Application() != nullptr) automatic = chosen;
  return chosen;
}

void ForgetAutomaticLanguage() {
  AutomaticLanguage().reset();
}

}  // namespace qv
