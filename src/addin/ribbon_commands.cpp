#include "addin/ribbon_commands.h"

namespace qv {
namespace {

using enum RibbonAction;

constexpr RibbonCommand kCommands[] = {
    {100, kShowPage, L"translate", L"full", L"Excel TranslateFullDocClicked\r\n", L""},
    {101, kShowPage, L"translate", L"selection", L"Excel TranslateSelectionClicked\r\n", L""},
    {102, kShowPage, L"glossary", L"", L"", L""},
    {103, kShowPage, L"instruction", L"", L"", L""},
    {104, kShowPage, L"quicktranslate", L"", L"", L""},
    {111, kShowPage, L"grammar", L"", L"", L""},
    {105, kShowPage, L"chat", L"", L"", L""},
    {107, kShowPage, L"agents", L"", L"", L""},
    {106, kShowPage, L"account", L"", L"", L""},
    {109, kShowPage, L"support", L"", L"", L"support:entry_click"},
    {110, kShowPage, L"imagetranslate", L"", L"", L""},
    {112, kShowPage, L"imagetotable", L"", L"", L""},
    {113, kShowPage, L"pdf2table", L"", L"", L""},
    {114, kRemoveBlankRows, L"", L"", L"", L""},
    {115, kOpenPdfTranslation, L"", L"", L"", L""},
    {133, kChooseLanguage, L"", L"", L"", L""},
};

}  // namespace

const RibbonCommand* FindRibbonCommand(std::int32_t id) {
  for (const RibbonCommand& command : kCommands) {
    if (command.id == id) return &command;
  }
  return nullptr;
}

}  // namespace qv
