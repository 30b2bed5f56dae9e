#include "host/command.h"

#include <stdexcept>

#include "foundation/text.h"

namespace qv::devhost {

const CommandHandlers& AllCommands() {
  static const CommandHandlers kHandlers = [] {
    CommandHandlers handlers;
    AddPageCommands(handlers);
    AddSpreadsheetCommands(handlers);
    AddWindowCommands(handlers);
    AddPaneCommands(handlers);
    AddBoxCommands(handlers);
    AddDiagnosisCommands(handlers);
    return handlers;
  }();
  return kHandlers;
}

Json OkAnswer() {
  return Json{{"ok", true}};
}

Json OkAnswer(const nlohmann::json& members) {
  Json answer = OkAnswer();
  for (const auto& [name, value] : members.items())
    answer[name] = Json(value);
  return answer;
}

std::wstring TextMember(const Json& members, const char* name) {
  return FromUtf8(members.value(name, std::string()));
}

PaneList::Pane PaneFor(CommandContext& context, const Json& members) {
  const auto open = context.host.Panes().OpenPanes();
  if (open.empty()) throw std::runtime_error("no pane is open");
  const int number = members.value("pane", open.front().number);
  for (const auto& pane : open) {
    if (pane.number == number) return pane;
  }
  throw std::runtime_error("there is no open pane " + std::to_string(number));
}

}  // namespace qv::devhost
