#include <stdexcept>

#include "foundation/text.h"
#include "host/command.h"
#include "host/windows_path.h"

namespace qv::devhost {
namespace {

Engine& EngineOf(CommandContext& context) {
  return context.host.Spreadsheet();
}

int ActiveWindowOf(CommandContext& context) {
  return context.host.Documents().Active().Id();
}

/// The visible sheets of the active workbook, after one of them was activated, renamed or deleted.
Json Sheet(CommandContext& context, const Json& m) {
  if (m.size() > 2 && !(m.size() == 3 && m.contains("rename") && m.contains("to")))
    throw std::runtime_error("\"sheet\" takes one of \"activate\", \"rename\" with \"to\", and \"delete\"");
  if (m.contains("rename") != m.contains("to"))
    throw std::runtime_error("\"rename\" and \"to\" go together in \"sheet\"");
  Engine& engine = EngineOf(context);
  const int window = ActiveWindowOf(context);
  if (m.contains("activate")) engine.ActivateSheet(window, TextMember(m, "activate"));
  if (m.contains("rename")) engine.RenameSheet(TextMember(m, "rename"), TextMember(m, "to"));
  if (m.contains("delete")) engine.DeleteSheet(TextMember(m, "delete"));
  const GridSnapshot shown = engine.Grid(window, {1, 1, 1, 1});
  Json answer = OkAnswer();
  answer["active"] = ToUtf8(shown.sheets.at(shown.activeSheet));
  answer["sheets"] = Json::array();
  for (const auto& name : shown.sheets)
    answer["sheets"].push_back(ToUtf8(name));
  return answer;
}

}  // namespace

void AddSpreadsheetCommands(CommandHandlers& handlers) {
  handlers["cell"] = [](CommandContext& context, const Json& m) {
    return OkAnswer(EngineOf(context).Cell(TextMember(m, "sheet"), m.value("address", std::string())));
  };
  handlers["select"] = [](CommandContext& context, const Json& m) {
    EngineOf(context).Select(TextMember(m, "sheet"), m.value("address", std::string()));
    return OkAnswer();
  };
  handlers["set-cell"] = [](CommandContext& context, const Json& m) {
    EngineOf(context).Type(TextMember(m, "sheet"), m.value("address", std::string()), TextMember(m, "text"));
    return OkAnswer();
  };
  handlers["insert-rows"] = [](CommandContext& context, const Json& m) {
    EngineOf(context).InsertRows(TextMember(m, "sheet"), m.at("row").get<int>(), m.value("count", 1));
    return OkAnswer();
  };
  handlers["sheet"] = Sheet;
  handlers["close-workbook"] = [](CommandContext& context, const Json& m) {
    context.host.Documents().CloseWorkbook(TextMember(m, "name"));
    return OkAnswer();
  };
  handlers["protect"] = [](CommandContext& context, const Json& m) {
    EngineOf(context).Protect(TextMember(m, "sheet"), m.value("on", false));
    return OkAnswer();
  };
  handlers["save"] = [](CommandContext& context, const Json& m) {
    EngineOf(context).Save(ToWindowsPath(TextMember(m, "path")));
    return OkAnswer();
  };
  handlers["shot"] = [](CommandContext& context, const Json& m) {
    EngineOf(context).Shot(ToWindowsPath(TextMember(m, "path")));
    return OkAnswer();
  };
  handlers["counters"] = [](CommandContext& context, const Json&) {
    Json answer = OkAnswer(EngineOf(context).Counters());
    answer["webViewObjects"] = context.host.WebViews().Control().LiveObjects();
    return answer;
  };
  handlers["reset-counters"] = [](CommandContext& context, const Json&) {
    EngineOf(context).ResetCounters();
    return OkAnswer();
  };
  handlers["fault"] = [](CommandContext& context, const Json& m) {
    EngineOf(context).Fault(nlohmann::json(m.at("fault")));
    return OkAnswer();
  };
}

}  // namespace qv::devhost
