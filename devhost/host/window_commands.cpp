#include <stdexcept>

#include "foundation/text.h"
#include "host/command.h"
#include "host/picture.h"
#include "host/windows_path.h"

namespace qv::devhost {
namespace {

Ribbon& RibbonOf(CommandContext& context) {
  Ribbon* const ribbon = context.host.Session().TheRibbon();
  if (ribbon == nullptr) throw std::runtime_error("the add-in has no ribbon");
  return *ribbon;
}

Json DescribeImage(const ComPtr<IPicture>& picture) {
  BITMAP bitmap{};
  const HBITMAP handle = BitmapOf(picture.Get());
  if (handle == nullptr || GetObjectW(handle, sizeof bitmap, &bitmap) == 0) return nullptr;
  return {{"width", bitmap.bmWidth}, {"height", bitmap.bmHeight}};
}

Json DescribeItem(Ribbon& ribbon, const RibbonItem& item) {
  return {{"id", ToUtf8(item.id)}, {"label", ToUtf8(ribbon.Label(item))}};
}

Json DescribeButton(Ribbon& ribbon, const RibbonItem& item) {
  Json button = DescribeItem(ribbon, item);
  button["tag"] = ToUtf8(item.tag);
  button["tip"] = ToUtf8(ribbon.Screentip(item));
  button["large"] = item.isLarge;
  button["image"] = DescribeImage(ribbon.Image(item));
  return button;
}

Json DescribeRibbon(CommandContext& context, const Json&) {
  Ribbon& ribbon = RibbonOf(context);
  Json answer = OkAnswer();
  answer["refused"] = ribbon.Refusal();
  answer["tabs"] = Json::array();
  for (const auto& tabItem : ribbon.Description().tabs) {
    Json tab = DescribeItem(ribbon, tabItem);
    tab["groups"] = Json::array();
    for (const auto& groupItem : tabItem.children) {
      Json group = DescribeItem(ribbon, groupItem);
      group["buttons"] = Json::array();
      for (const auto& button : groupItem.children)
        group["buttons"].push_back(DescribeButton(ribbon, button));
      tab["groups"].push_back(std::move(group));
    }
    answer["tabs"].push_back(std::move(tab));
  }
  answer["errors"] = ribbon.Errors();
  return answer;
}

Json Press(CommandContext& context, const Json& members) {
  const auto id = TextMember(members, "button");
  const RibbonItem* const button = RibbonOf(context).Find(id);
  if (button == nullptr || button->onAction.empty())
    throw std::runtime_error("the ribbon has no button \"" + ToUtf8(id) + "\" with an action");
  context.afterwards = [&host = context.host, button] { host.PressButton(*button); };
  return OkAnswer();
}

/// "close" names a window, or with true means the active one.
int WindowToClose(CommandContext& context, const Json& close) {
  return close.is_boolean() ? context.host.Documents().Active().Id() : close.get<int>();
}

Json Window(CommandContext& context, const Json& members) {
  if (members.size() > 2)
    throw std::runtime_error("\"window\" takes one of \"open\", \"new\", \"close\" and \"activate\"");
  auto& documents = context.host.Documents();
  auto& engine = context.host.Spreadsheet();
  if (members.contains("open"))
    static_cast<void>(engine.OpenWindow(ToWindowsPath(TextMember(members, "open"))));
  if (members.value("new", false)) static_cast<void>(engine.NewWindow());
  if (members.contains("close")) documents.Close(WindowToClose(context, members.at("close")));
  if (members.contains("activate")) documents.Activate(members.at("activate").get<int>());
  documents.Sync();
  Json answer = OkAnswer();
  answer["windows"] = Json::array();
  for (const auto& info : engine.Windows()) {
    answer["windows"].push_back({{"window", info.id},
                                 {"caption", ToUtf8(info.caption)},
                                 {"workbook", ToUtf8(info.workbook)},
                                 {"active", info.active}});
  }
  return answer;
}

}  // namespace

void AddWindowCommands(CommandHandlers& handlers) {
  handlers["ribbon"] = DescribeRibbon;
  handlers["press"] = Press;
  handlers["window"] = Window;
}

}  // namespace qv::devhost
