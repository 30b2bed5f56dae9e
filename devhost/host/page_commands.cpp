#include <algorithm>
#include <stdexcept>

#include "foundation/text.h"
#include "host/command.h"
#include "host/page_input.h"

namespace qv::devhost {
namespace {

constexpr DWORD kDefaultTimeoutMs = 60'000;

const char* KindName(PageItemKind kind) {
  switch (kind) {
    case PageItemKind::kNavigate:
      return "navigate";
    case PageItemKind::kScript:
      return "script";
    case PageItemKind::kJson:
      return "json";
    case PageItemKind::kRejected:
      return "rejected";
    case PageItemKind::kMessage:
      return "message";
  }
  return "";
}

WebViewControl& ControlOf(CommandContext& context) {
  return context.host.WebViews().Control();
}

Json Describe(const CommandContext& context, const PageItem& item) {
  return Json{{"seq", item.sequence},
              {"ms", item.tick < context.started ? 0 : item.tick - context.started},
              {"view", item.view},
              {"kind", KindName(item.kind)},
              {"text", ToUtf8(item.text)}};
}

/// The newest web view outside the panes: the workspace window's.
std::uint32_t WorkspaceView(CommandContext& context) {
  std::uint32_t found = 0;
  ViewInfo view{};
  for (std::uint32_t i = 0; ControlOf(context).View(i, &view); ++i) {
    if (!view.closed && Contains(view.source, L"&surface=workspace")) found = view.view;
  }
  if (found == 0) throw std::runtime_error("no workspace window is open");
  return found;
}

std::uint32_t ViewFor(CommandContext& context, const Json& members) {
  const auto surface = members.value("surface", std::string("pane"));
  if (surface == "workspace") return WorkspaceView(context);
  if (surface != "pane") throw std::runtime_error("\"surface\" must be pane or workspace");
  const auto pane = PaneFor(context, members);
  const auto views = context.host.WebViews().ViewsIn(pane.frame->Window());
  const auto live = std::ranges::find_if(views, [](const ViewInfo& view) { return !view.closed; });
  if (live == views.end())
    throw std::runtime_error("pane " + std::to_string(pane.number) + " has no web view");
  return live->view;
}

Json Post(CommandContext& context, const Json& members) {
  const std::uint32_t view = ViewFor(context, members);
  const std::wstring message = FromUtf8(ToLine(members.at("message")));
  const std::wstring source = TextMember(members, "source");
  const wchar_t* from = members.contains("source") ? source.c_str() : nullptr;
  auto& control = ControlOf(context);
  const bool posted = members.value("asJson", false) ? control.PostPageJson(view, message.c_str(), from)
                                                     : control.PostPageString(view, message.c_str(), from);
  if (!posted) throw std::runtime_error("the message could not be posted");
  return OkAnswer();
}

std::optional<Json> FindOutput(CommandContext& context, const std::wstring& part) {
  PageItem item{};
  for (std::uint64_t index = context.cursor; ControlOf(context).Item(index, &item); ++index) {
    const bool isOutput = item.kind == PageItemKind::kScript || item.kind == PageItemKind::kJson;
    if (!isOutput || !Contains(item.text, part)) continue;
    context.cursor = index + 1;
    Json answer = OkAnswer();
    answer.update(Describe(context, item));
    return answer;
  }
  return std::nullopt;
}

Outcome Wait(CommandContext& context, const Json& members) {
  const auto limit = members.value("timeoutMs", kDefaultTimeoutMs);
  const std::wstring part = TextMember(members, "script");
  return PendingAnswer{[&context, part] { return FindOutput(context, part); }, GetTickCount64() + limit,
                       [limit, part] {
                         return ErrorAnswer("timed out after " + std::to_string(limit) +
                                            " ms waiting for \"" + ToUtf8(part) + "\"");
                       }};
}

Json Scripts(CommandContext& context, const Json&) {
  Json answer = OkAnswer();
  answer["scripts"] = Json::array();
  PageItem item{};
  for (std::uint64_t index = 0; ControlOf(context).Item(index, &item); ++index)
    answer["scripts"].push_back(Describe(context, item));
  return answer;
}

/// Runs a script in a view's page; `take` makes the answer of its JSON result.
PendingAnswer Evaluate(CommandContext& context, std::uint32_t view, const std::wstring& script, DWORD limit,
                       std::function<Json(const Json&)> take) {
  const auto number = ControlOf(context).Evaluate(view, script.c_str());
  if (number == 0)
    throw std::runtime_error("no real page is behind the view: start the host with --browser chromium");
  const auto poll = [&context, number, take = std::move(take)]() -> std::optional<Json> {
    Evaluation evaluation{};
    if (!ControlOf(context).TakeEvaluation(number, &evaluation)) return std::nullopt;
    const std::string text = ToUtf8(evaluation.text);
    if (evaluation.result == DISP_E_EXCEPTION) throw std::runtime_error("the script threw: " + text);
    if (FAILED(evaluation.result))
      throw std::runtime_error("the script did not run to its end: " + HresultText(evaluation.result));
    return take(Json::parse(text));
  };
  return {poll, GetTickCount64() + limit,
          [limit] { return ErrorAnswer("the page did not answer within " + std::to_string(limit) + " ms"); }};
}

Outcome Page(CommandContext& context, const Json& members) {
  return Evaluate(context, ViewFor(context, members), TextMember(members, "eval"),
                  members.value("timeoutMs", kDefaultTimeoutMs), [](const Json& value) {
                    Json answer = OkAnswer();
                    answer["value"] = value;
                    return answer;
                  });
}

/// Where a click on the element goes, in the page's pixels; null when there is none or something covers it.
std::wstring PlaceScript(const Json& members) {
  const std::string selector = Json(members.at("selector").get<std::string>()).dump();
  return FromUtf8("(() => { const e = document.querySelector(" + selector + R"();
    if (!e) return {error: "no element matches"};
    e.scrollIntoView({block: "nearest", inline: "nearest", behavior: "instant"});
    const r = e.getBoundingClientRect(), x = r.left + r.width / 2, y = r.top + r.height / 2;
    const at = document.elementFromPoint(x, y);
    if (r.width === 0 || r.height === 0 || !at) return {error: "the element is not visible"};
    const labels = [...(e.labels ?? [])];
    if (!e.contains(at) && !labels.some(label => label.contains(at))) return {error: "the element is covered by " + at.outerHTML.slice(0, 80)};
    return {x: Math.round(x), y: Math.round(y)}; })())");
}

Outcome Click(CommandContext& context, const Json& members) {
  const std::uint32_t view = ViewFor(context, members);
  return Evaluate(context, view, PlaceScript(members), kDefaultTimeoutMs,
                  [&context, view](const Json& place) {
                    if (place.contains("error"))
                      throw std::runtime_error(place.at("error").get<std::string>());
                    const HWND window = ControlOf(context).ViewWindow(view);
                    if (window == nullptr) throw std::runtime_error("the view has gone");
                    ClickIn(window, {place.at("x").get<LONG>(), place.at("y").get<LONG>()});
                    return OkAnswer();
                  });
}

Json Type(CommandContext& context, const Json& members) {
  const HWND window = ControlOf(context).ViewWindow(ViewFor(context, members));
  if (window == nullptr) throw std::runtime_error("no page is there to type into");
  TypeInto(window, TextMember(members, "text"));
  return OkAnswer();
}

}  // namespace

void AddPageCommands(CommandHandlers& handlers) {
  handlers["post"] = Post;
  handlers["wait"] = Wait;
  handlers["scripts"] = Scripts;
  handlers["script-result"] = [](CommandContext& context, const Json& m) {
    ControlOf(context).SetScriptResult(TextMember(m, "script").c_str(), S_OK,
                                       TextMember(m, "result").c_str());
    return OkAnswer();
  };
  handlers["page"] = Page;
  handlers["click"] = Click;
  handlers["type"] = Type;
  handlers["kill-browser"] = [](CommandContext& context, const Json&) {
    if (!ControlOf(context).CrashBrowser()) throw std::runtime_error("no browser runs");
    return OkAnswer();
  };
  handlers["crash-page"] = [](CommandContext& context, const Json& m) {
    if (!ControlOf(context).CrashPage(ViewFor(context, m)))
      throw std::runtime_error("no real page is behind the view");
    return OkAnswer();
  };
}

}  // namespace qv::devhost
