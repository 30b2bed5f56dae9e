#include "translation/start_request.h"

#include <algorithm>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// A member as text, whatever its type: a string's value, or the bare word or number.
std::wstring ScalarOf(std::wstring_view message, std::wstring_view key) {
  const std::wstring needle = Concat(L'"', key, L'"');
  std::size_t at = message.find(needle) + needle.size();
  at = std::min(message.find_first_not_of(L" \t:", at), message.size());
  const std::wstring_view value = message.substr(at);
  if (value.starts_with(L'"')) return JsonDecodeString(value, 1);
  return std::wstring(Trim(value.substr(0, value.find_first_of(L",}]"))));
}

std::wstring ForLog(std::wstring_view message, std::wstring_view key) {
  if (!JsonHasKey(message, key)) return L"(null)";
  std::wstring value = ScalarOf(message, key);
  return value.empty() ? L"(empty)" : value;
}

}  // namespace

TargetFont ParseTargetFont(std::wstring_view message) {
  TargetFont font;
  if (std::wstring name = JsonGetString(message, L"targetFont"); !name.empty()) font.name = name;
  if (const double size = JsonGetDouble(message, L"targetFontSize"); size > 0.0) font.size = size;
  // A missing flag reads as false, but only a present one may switch bold off.
  if (JsonHasKey(message, L"targetFontBold")) font.bold = JsonGetBool(message, L"targetFontBold");
  if (JsonHasKey(message, L"targetFontColor")) {
    if (const std::int32_t color = JsonGetInt(message, L"targetFontColor"); color >= 0) font.color = color;
  }
  return font;
}

StartRequest ParseStartRequest(std::wstring_view action, std::wstring_view message) {
  StartRequest start;
  start.sourceLang = JsonGetString(message, L"sourceLang");
  start.targetLang = JsonGetString(message, L"targetLang");
  start.clientTraceId = JsonGetString(message, L"clientTraceId");
  start.selection = action == L"startSelection" || JsonGetString(message, L"panelMode") == L"selection";
  start.restart =
      action == L"restart" || JsonGetBool(message, L"restart") || JsonGetBool(message, L"panelIsRestart");
  start.allSheets = !start.selection && JsonGetBool(message, L"excelTranslateAllSheets");
  start.bilingual = JsonGetBool(message, L"excelBilingualBelow");
  start.viaPanel = JsonGetBool(message, L"nativeTranslateViaJs");
  start.hasViaPanelField = JsonHasKey(message, L"nativeTranslateViaJs");
  start.terminology = ParseTerminologyChoice(message);
  start.font = ParseTargetFont(message);
  return start;
}

std::wstring StartLogLine(std::wstring_view action, std::wstring_view message) {
  return Concat(L"Excel translateStart action=", action, L" panelMode=", ForLog(message, L"panelMode"),
                L" panelIsRestart=", ForLog(message, L"panelIsRestart"), L" panelScriptRev=",
                ForLog(message, L"panelScriptRev"), L"\r\n");
}

}  // namespace qv
