#include "services/claude_config.h"

#include "services/agent_kinds.h"
#include "services/json_spans.h"

namespace qv {
namespace {

constexpr std::string_view kServers = "mcpServers";
constexpr std::string_view kSpace = " \t\r\n";

std::string Entry() {
  return std::string("\"")
      .append(kMcpEntryName)
      .append("\": {\n      \"type\": \"http\",\n      \"url\": \"")
      .append(kMcpEntryUrl)
      .append("\",\n      \"disabled\": false\n    }");
}

/// An object of servers with this one alone.
std::string NewServers() {
  return "{\n    " + Entry() + "\n  }";
}

std::string NewServersMember() {
  return "\n  \"" + std::string(kServers) + "\": " + NewServers();
}

std::string Replaced(std::string_view text, JsonSpan span, std::string_view by) {
  return std::string(text.substr(0, span.begin)).append(by).append(text.substr(span.end));
}

/// Behind the last member, so that the line of the closing brace stays as it is.
std::string WithServersMember(std::string_view json, const JsonObjectSpan& top) {
  const std::size_t close = top.braces.end - 1;
  const bool isEmpty = top.members.empty();
  const std::size_t at = isEmpty ? top.braces.begin + 1 : top.members.back().value.end;
  const bool closesOnOwnLine = json.substr(at, close - at).find('\n') != std::string_view::npos;
  return Replaced(json, {at, at}, (isEmpty ? "" : ",") + NewServersMember() + (closesOnOwnLine ? "" : "\n"));
}

/// As the first server.
std::string WithServer(std::string_view json, const JsonObjectSpan& servers) {
  const std::size_t at = servers.braces.begin + 1;
  if (!servers.members.empty()) return Replaced(json, {at, at}, "\n    " + Entry() + ",");
  const bool closesOnOwnLine = servers.braces.In(json).find('\n') != std::string_view::npos;
  return Replaced(json, {at, at}, "\n    " + Entry() + (closesOnOwnLine ? "" : "\n  "));
}

}  // namespace

std::optional<std::string> WithClaudeEntry(std::string_view json) {
  if (json.find_first_not_of(kSpace) == std::string_view::npos) return "{" + NewServersMember() + "\n}\n";
  const auto top = JsonObjectIn(json);
  if (!top) return std::nullopt;
  const JsonMemberSpan* const member = JsonMemberNamed(json, *top, kServers);
  if (member == nullptr) return WithServersMember(json, *top);
  if (member->value.In(json) == "null") return Replaced(json, member->value, NewServers());
  const auto servers = JsonObjectIn(json, member->value);
  if (!servers) return std::nullopt;
  const JsonMemberSpan* const entry = JsonMemberNamed(json, *servers, kMcpEntryName);
  if (entry == nullptr) return WithServer(json, *servers);
  return Replaced(json, {entry->name.begin, entry->value.end}, Entry());
}

bool ClaudePointsAtMcpServer(std::string_view json) {
  const auto url = JsonStringAt(json, {kServers, kMcpEntryName, "url"});
  return url && IsMcpEntryUrl(*url);
}

}  // namespace qv
