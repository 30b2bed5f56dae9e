#include "host/command_runner.h"

#include <algorithm>
#include <map>
#include <stdexcept>

#include "foundation/text.h"
#include "host/trace_logs.h"
#include "host/windows_path.h"

namespace qv::devhost {
namespace {

constexpr DWORD kDefaultTimeoutMs = 60'000;

std::wstring Text(const Json& members, const char* name) {
  return FromUtf8(members.value(name, std::string()));
}

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

Json Ok() {
  return Json{{"ok", true}};
}

/// The engine's object behind "ok".
Json OkWith(const nlohmann::json& members) {
  Json answer = Ok();
  for (const auto& [name, value] : members.items())
    answer[name] = Json(value);
  return answer;
}

}  // namespace

CommandRunner::CommandRunner(DevelopmentHost& host, Answer answer)
    : host_(host), answer_(std::move(answer)) {}

void CommandRunner::Take(const InputLine& line) {
  queue_.push_back(line);
  Advance();
}

void CommandRunner::Advance() {
  // A command may dispatch messages, and with them comes the next call of this function.
  if (running_) return;
  running_ = true;
  while (!finished_) {
    if (wait_ && !TryFinishWait()) break;
    if (queue_.empty()) break;
    const InputLine line = std::move(queue_.front());
    queue_.pop_front();
    Run(line);
  }
  running_ = false;
}

DWORD CommandRunner::NextWake() const {
  if (!wait_) return INFINITE;
  const ULONGLONG now = GetTickCount64();
  return wait_->deadline <= now ? 0 : static_cast<DWORD>(wait_->deadline - now);
}

void CommandRunner::Run(const InputLine& line) {
  if (line.kind == InputLine::Kind::kEnd) {
    static_cast<void>(host_.End());
    finished_ = true;
    return;
  }
  if (line.kind == InputLine::Kind::kTooLong) {
    answer_(ErrorAnswer("the line is longer than " + std::to_string(kMaximumLineBytes) + " bytes"));
    return;
  }
  std::string error;
  const auto command = ParseCommand(line.text, error);
  if (!command) {
    answer_(ErrorAnswer(error));
    return;
  }
  try {
    if (const auto answer = Execute(*command)) answer_(*answer);
  } catch (const std::exception& failure) {
    answer_(ErrorAnswer(failure.what()));
  }
}

std::optional<Json> CommandRunner::Execute(const Command& command) {
  using Handler = std::function<std::optional<Json>(CommandRunner&, const Json&)>;
  static const std::map<std::string, Handler> kHandlers = {
      {"post", [](CommandRunner& self, const Json& m) { return self.Post(m); }},
      {"wait",
       [](CommandRunner& self, const Json& m) -> std::optional<Json> {
         const ULONGLONG now = GetTickCount64();
         self.wait_ = Wait{Text(m, "script"), now, now + m.value("timeoutMs", kDefaultTimeoutMs)};
         return std::nullopt;
       }},
      {"scripts", [](CommandRunner& self, const Json&) { return self.Scripts(); }},
      {"script-result",
       [](CommandRunner& self, const Json& m) {
         self.host_.WebViews().Control().SetScriptResult(Text(m, "script").c_str(), S_OK,
                                                         Text(m, "result").c_str());
         return Ok();
       }},
      {"cell",
       [](CommandRunner& self, const Json& m) {
         return OkWith(self.host_.Spreadsheet().Cell(Text(m, "sheet"), m.value("address", std::string())));
       }},
      {"select",
       [](CommandRunner& self, const Json& m) {
         self.host_.Spreadsheet().Select(Text(m, "sheet"), m.value("address", std::string()));
         return Ok();
       }},
      {"protect",
       [](CommandRunner& self, const Json& m) {
         self.host_.Spreadsheet().Protect(Text(m, "sheet"), m.value("on", false));
         return Ok();
       }},
      {"save",
       [](CommandRunner& self, const Json& m) {
         self.host_.Spreadsheet().Save(ToWindowsPath(Text(m, "path")));
         return Ok();
       }},
      {"shot",
       [](CommandRunner& self, const Json& m) {
         self.host_.Spreadsheet().Shot(ToWindowsPath(Text(m, "path")));
         return Ok();
       }},
      {"counters", [](CommandRunner& self, const Json&) { return self.Counters(); }},
      {"reset-counters",
       [](CommandRunner& self, const Json&) {
         self.host_.Spreadsheet().ResetCounters();
         return Ok();
       }},
      {"fault",
       [](CommandRunner& self, const Json& m) {
         self.host_.Spreadsheet().Fault(nlohmann::json(m.at("fault")));
         return Ok();
       }},
      {"log",
       [](CommandRunner&, const Json&) {
         Json answer = Ok();
         answer["paths"] = TraceLogPaths();
         return answer;
       }},
      {"calls",
       [](CommandRunner& self, const Json&) {
         Json answer = Ok();
         answer["calls"] = self.host_.Log().Lines();
         return answer;
       }},
      {"panes", [](CommandRunner& self, const Json&) { return self.Panes(); }},
      {"open-pane",
       [](CommandRunner& self, const Json&) {
         Json answer = Ok();
         answer["pane"] = self.host_.OpenPane().number;
         return answer;
       }},
      {"close-pane",
       [](CommandRunner& self, const Json& m) {
         const auto pane = self.host_.Panes().Find(m.value("pane", 0));
         if (!pane) throw std::runtime_error("there is no open pane " + std::to_string(m.value("pane", 0)));
         pane->Close();
         return Ok();
       }},
      {"quit", [](CommandRunner& self, const Json&) { return self.Quit(); }},
  };
  return kHandlers.at(command.name)(*this, command.members);
}

bool CommandRunner::TryFinishWait() {
  WebViewControl& control = host_.WebViews().Control();
  PageItem item{};
  for (std::uint64_t index = cursor_; control.Item(index, &item); ++index) {
    const bool isOutput = item.kind == PageItemKind::kScript || item.kind == PageItemKind::kJson;
    if (!isOutput || !Contains(item.text, wait_->part)) continue;
    cursor_ = index + 1;
    Json answer = Ok();
    answer.update(Describe(item));
    wait_.reset();
    answer_(answer);
    return true;
  }
  if (GetTickCount64() < wait_->deadline) return false;
  const auto limit = wait_->deadline - wait_->started;
  const std::string error =
      "timed out after " + std::to_string(limit) + " ms waiting for \"" + ToUtf8(wait_->part) + "\"";
  wait_.reset();
  answer_(ErrorAnswer(error));
  return true;
}

std::uint32_t CommandRunner::ViewFor(const Json& members) const {
  const auto open = host_.Panes().OpenPanes();
  if (open.empty()) throw std::runtime_error("no pane is open");
  const int number = members.value("pane", open.front().number);
  const auto pane = host_.Panes().Find(number);
  if (!pane) throw std::runtime_error("there is no open pane " + std::to_string(number));
  const auto views = host_.WebViews().ViewsIn(pane->Window());
  const auto live =
      std::find_if(views.begin(), views.end(), [](const ViewInfo& view) { return !view.closed; });
  if (live == views.end()) throw std::runtime_error("pane " + std::to_string(number) + " has no web view");
  return live->view;
}

Json CommandRunner::Post(const Json& members) {
  const std::uint32_t view = ViewFor(members);
  const std::wstring message = FromUtf8(ToLine(members.at("message")));
  const std::wstring source = Text(members, "source");
  const wchar_t* from = members.contains("source") ? source.c_str() : nullptr;
  auto& control = host_.WebViews().Control();
  const bool posted = members.value("asJson", false) ? control.PostPageJson(view, message.c_str(), from)
                                                     : control.PostPageString(view, message.c_str(), from);
  if (!posted) throw std::runtime_error("the message could not be posted");
  return Ok();
}

Json CommandRunner::Describe(const PageItem& item) const {
  return Json{{"seq", item.sequence},
              {"ms", item.tick < started_ ? 0 : item.tick - started_},
              {"view", item.view},
              {"kind", KindName(item.kind)},
              {"text", ToUtf8(item.text)}};
}

Json CommandRunner::Scripts() const {
  Json answer = Ok();
  answer["scripts"] = Json::array();
  PageItem item{};
  for (std::uint64_t index = 0; host_.WebViews().Control().Item(index, &item); ++index) {
    answer["scripts"].push_back(Describe(item));
  }
  return answer;
}

Json CommandRunner::Counters() const {
  Json answer = OkWith(host_.Spreadsheet().Counters());
  answer["webViewObjects"] = host_.WebViews().Control().LiveObjects();
  return answer;
}

Json CommandRunner::Panes() const {
  Json answer = Ok();
  answer["panes"] = Json::array();
  for (const auto& pane : host_.Panes().OpenPanes()) {
    Json entry{{"pane", pane.number},
               {"title", ToUtf8(pane.frame->Title())},
               {"visible", pane.frame->IsVisible()},
               {"width", pane.frame->ContentSize().cx},
               {"height", pane.frame->ContentSize().cy},
               {"views", Json::array()}};
    for (const auto& view : host_.WebViews().ViewsIn(pane.frame->Window())) {
      entry["views"].push_back({{"view", view.view},
                                {"source", ToUtf8(view.source)},
                                {"visible", view.visible},
                                {"closed", view.closed},
                                {"width", view.bounds.right - view.bounds.left},
                                {"height", view.bounds.bottom - view.bounds.top}});
    }
    answer["panes"].push_back(std::move(entry));
  }
  return answer;
}

Json CommandRunner::Quit() {
  const auto ending = host_.End();
  finished_ = true;
  Json answer = Ok();
  if (!ending.Clean()) answer = ErrorAnswer("the add-in left something behind");
  answer["liveObjects"] = ending.liveObjects;
  answer["canUnload"] = ending.canUnload;
  answer["eventSinks"] = ending.eventSinks;
  answer["wrongThread"] = ending.wrongThread;
  answer["addinReferences"] = ending.addinReferences;
  answer["paneReferences"] = ending.paneReferences;
  answer["siteReferences"] = ending.siteReferences;
  answer["webViewObjects"] = ending.webViewObjects;
  return answer;
}

}  // namespace qv::devhost
