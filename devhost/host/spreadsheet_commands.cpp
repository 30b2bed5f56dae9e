#include "host/command.h"
#include "host/windows_path.h"

namespace qv::devhost {
namespace {

Engine& EngineOf(CommandContext& context) {
  return context.host.Spreadsheet();
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
