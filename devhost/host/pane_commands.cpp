#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "foundation/text.h"
#include "host/command.h"

namespace qv::devhost {
namespace {

/// In the order of PaneDock.
constexpr const char* kDocks[] = {"left", "top", "right", "bottom", "floating"};

Json DescribeView(const ViewInfo& view) {
  return {{"view", view.view},
          {"source", ToUtf8(view.source)},
          {"visible", view.visible},
          {"closed", view.closed},
          {"width", view.bounds.right - view.bounds.left},
          {"height", view.bounds.bottom - view.bounds.top}};
}

Json Panes(CommandContext& context) {
  context.host.Documents().Sync();
  Json answer = OkAnswer();
  answer["panes"] = Json::array();
  for (const auto& pane : context.host.Panes().OpenPanes()) {
    const SIZE size = pane.frame->ContentSize();
    Json entry{{"pane", pane.number},
               {"title", ToUtf8(pane.frame->Title())},
               {"visible", pane.frame->IsVisible()},
               {"window", pane.frame->Document()->Id()},
               {"dock", kDocks[static_cast<std::size_t>(pane.frame->Dock())]},
               {"widthPt", pane.frame->WidthPt()},
               {"width", size.cx},
               {"height", size.cy},
               {"views", Json::array()}};
    for (const auto& view : context.host.WebViews().ViewsIn(pane.frame->Window()))
      entry["views"].push_back(DescribeView(view));
    answer["panes"].push_back(std::move(entry));
  }
  return answer;
}

Json SetWidth(CommandContext& context, const Json& members) {
  const auto pane = PaneFor(context, members);
  if (!pane.frame->DragWidthPt(members.at("pt").get<int>()))
    throw std::runtime_error(
        "a pane that is hidden, or docked at the top, at the bottom or nowhere, has no splitter");
  Json answer = OkAnswer();
  answer["pt"] = pane.frame->WidthPt();
  return answer;
}

Json SetDock(CommandContext& context, const Json& members) {
  const auto name = members.at("position").get<std::string>();
  const auto dock = std::ranges::find(kDocks, name);
  if (dock == std::end(kDocks))
    throw std::runtime_error("\"position\" must be left, top, right, bottom or floating");
  PaneFor(context, members).frame->SetDock(static_cast<PaneDock>(dock - std::begin(kDocks)));
  return OkAnswer();
}

}  // namespace

void AddPaneCommands(CommandHandlers& handlers) {
  handlers["panes"] = [](CommandContext& context, const Json&) { return Panes(context); };
  handlers["open-pane"] = [](CommandContext& context, const Json&) {
    Json answer = OkAnswer();
    answer["pane"] = context.host.OpenPane().number;
    return answer;
  };
  handlers["close-pane"] = [](CommandContext& context, const Json& m) {
    PaneFor(context, m).frame->Close();
    return OkAnswer();
  };
  handlers["pane-width"] = SetWidth;
  handlers["pane-dock"] = SetDock;
}

}  // namespace qv::devhost
