#include "translation/quick_write_text.h"

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "translation/bilingual_text.h"

namespace qv {
namespace {

QuickWriteMode ModeOf(std::wstring_view name) {
  if (name == L"replace") return QuickWriteMode::kReplace;
  return name == L"insert" ? QuickWriteMode::kInsert : QuickWriteMode::kUnknown;
}

}  // namespace

QuickWriteRequest ParseQuickWrite(std::wstring_view message) {
  return {ModeOf(JsonGetString(message, L"mode")), JsonGetString(message, L"text")};
}

std::wstring InsertedText(std::wstring_view former, std::wstring_view text) {
  return Trim(former).empty() ? std::wstring(text) : MakeBilingualValue(former, text).text;
}

}  // namespace qv
