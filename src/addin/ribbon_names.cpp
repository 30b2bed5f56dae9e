#include "addin/ribbon_names.h"

namespace qv {
namespace {

struct RibbonName {
  std::wstring_view name;
  std::int32_t id;
};

constexpr RibbonName kNames[] = {
    {L"TranslateFullDocClicked", 100},
    {L"TranslateSelectionClicked", 101},
    {L"GlossaryClicked", 102},
    {L"InstructionClicked", 103},
    {L"QuickTranslateClicked", 104},
    {L"AiChatClicked", 105},
    {L"AccountClicked", 106},
    {L"AiAgentsClicked", 107},
    {L"GetImage", kRibbonGetImage},
    {L"SupportClicked", 109},
    {L"ImageTranslateClicked", 110},
    {L"GrammarClicked", 111},
    {L"ImageToTableClicked", 112},
    {L"PdfToTableClicked", 113},
    {L"DeleteBlankRowsClicked", 114},
    {L"PdfTranslateClicked", 115},
    {L"OnRibbonLoad", kRibbonOnLoad},
    {L"GetLabel", kRibbonGetLabel},
    {L"GetScreentip", kRibbonGetScreentip},
    {L"SettingsClicked", 133},
};

}  // namespace

std::optional<std::int32_t> RibbonDispId(std::wstring_view name) {
  for (const RibbonName& row : kNames) {
    if (row.name == name) return row.id;
  }
  return std::nullopt;
}

bool IsRibbonDispId(std::int32_t id) {
  for (const RibbonName& row : kNames) {
    if (row.id == id) return true;
  }
  return false;
}

}  // namespace qv
