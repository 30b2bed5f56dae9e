#include <stdexcept>

#include "foundation/text.h"
#include "host/command.h"
#include "host/open_box.h"

namespace qv::devhost {
namespace {

/// How long an answered box may take to close.
constexpr DWORD kCloseTimeoutMs = 5'000;

HWND RequireBox() {
  const HWND box = FindOpenBox();
  if (box == nullptr) throw std::runtime_error("no box is open");
  return box;
}

Json Describe(HWND box) {
  const BoxContent content = ReadBox(box);
  Json members{{"kind", content.kind},
               {"title", ToUtf8(content.title)},
               {"text", ToUtf8(content.text)},
               {"buttons", content.buttons},
               {"icon", content.icon}};
  if (content.kind == "languages") {
    members["selected"] = content.selectedRow;
    members["rows"] = Json::array();
    for (const auto& row : content.rows)
      members["rows"].push_back(ToUtf8(row));
  }
  return members;
}

Outcome MessageBoxCommand(CommandContext&, const Json& members) {
  const auto look = []() -> std::optional<Json> {
    const HWND box = FindOpenBox();
    if (box == nullptr) return std::nullopt;
    Json answer = OkAnswer();
    answer["box"] = Describe(box);
    return answer;
  };
  const auto none = [] {
    Json answer = OkAnswer();
    answer["box"] = nullptr;
    return answer;
  };
  return PendingAnswer{look, GetTickCount64() + members.value("timeoutMs", 0ULL), none};
}

Outcome AnswerCommand(CommandContext&, const Json& members) {
  const HWND box = RequireBox();
  const auto button = members.at("button").get<std::string>();
  if (!PressBoxButton(box, button)) throw std::runtime_error("the box has no button \"" + button + "\"");
  // A box that answers with a further one has been answered as well.
  const auto isAnswered = [box]() -> std::optional<Json> {
    if (IsWindow(box) && IsWindowVisible(box) && IsWindowEnabled(box)) return std::nullopt;
    return OkAnswer();
  };
  return PendingAnswer{isAnswered, GetTickCount64() + kCloseTimeoutMs,
                       [] { return ErrorAnswer("the box was answered and is still open"); }};
}

Outcome ChooseCommand(CommandContext&, const Json& members) {
  const int row = members.at("row").get<int>();
  if (!SelectBoxRow(RequireBox(), row))
    throw std::runtime_error("the box has no list with a row " + std::to_string(row));
  return OkAnswer();
}

}  // namespace

void AddBoxCommands(CommandHandlers& handlers) {
  handlers["messagebox"] = MessageBoxCommand;
  handlers["answer"] = AnswerCommand;
  handlers["choose"] = ChooseCommand;
}

}  // namespace qv::devhost
