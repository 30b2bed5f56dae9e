#include "host/protocol.h"

#include <algorithm>
#include <span>
#include <vector>

namespace qv::devhost {
namespace {

enum class MemberType { kText, kObject, kFlag, kPane, kTimeout };

struct MemberRule {
  const char* name;
  MemberType type;
  bool required = false;
};

struct CommandRule {
  const char* name;
  std::vector<MemberRule> members;
};

const std::vector<CommandRule>& CommandTable() {
  static const std::vector<CommandRule> kTable = {
      {"post",
       {{"message", MemberType::kObject, true},
        {"pane", MemberType::kPane},
        {"source", MemberType::kText},
        {"asJson", MemberType::kFlag}}},
      {"wait", {{"script", MemberType::kText, true}, {"timeoutMs", MemberType::kTimeout}}},
      {"scripts", {}},
      {"script-result", {{"script", MemberType::kText, true}, {"result", MemberType::kText, true}}},
      {"cell", {{"sheet", MemberType::kText}, {"address", MemberType::kText, true}}},
      {"select", {{"sheet", MemberType::kText}, {"address", MemberType::kText, true}}},
      {"protect", {{"sheet", MemberType::kText}, {"on", MemberType::kFlag, true}}},
      {"save", {{"path", MemberType::kText, true}}},
      {"shot", {{"path", MemberType::kText, true}}},
      {"counters", {}},
      {"reset-counters", {}},
      {"fault", {{"fault", MemberType::kObject, true}}},
      {"log", {}},
      {"calls", {}},
      {"panes", {}},
      {"open-pane", {}},
      {"close-pane", {{"pane", MemberType::kPane, true}}},
      {"quit", {}},
  };
  return kTable;
}

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

bool IsWholeNumber(const Json& value, std::int64_t low, std::int64_t high) {
  if (value.is_number_unsigned() && value.get<std::uint64_t>() > static_cast<std::uint64_t>(high))
    return false;
  return value.is_number_integer() && value.get<std::int64_t>() >= low && value.get<std::int64_t>() <= high;
}

/// What the member must be, or null when it is.
const char* Mismatch(const Json& value, MemberType type) {
  switch (type) {
    case MemberType::kText:
      return value.is_string() ? nullptr : "a text";
    case MemberType::kObject:
      return value.is_object() ? nullptr : "an object";
    case MemberType::kFlag:
      return value.is_boolean() ? nullptr : "true or false";
    case MemberType::kPane:
      return IsWholeNumber(value, 1, 1'000'000) ? nullptr : "a pane number";
    case MemberType::kTimeout:
      return IsWholeNumber(value, 0, kMaximumTimeoutMs) ? nullptr : "a whole number from 0 to 600000";
  }
  return nullptr;
}

/// Counts brackets outside strings, so that no parser has to follow a line down without limit.
bool IsTooDeep(std::string_view line) {
  int depth = 0;
  bool inString = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char unit = line[i];
    if (inString) {
      if (unit == '\\') ++i;
      if (unit == '"') inString = false;
    } else if (unit == '"') {
      inString = true;
    } else if (unit == '{' || unit == '[') {
      if (++depth > kMaximumDepth) return true;
    } else if (unit == '}' || unit == ']') {
      --depth;
    }
  }
  return false;
}

std::string CheckMembers(const Json& line, const CommandRule& rule) {
  const std::string where = " in " + Quoted(rule.name);
  for (const auto& [name, value] : line.items()) {
    if (name == "do") continue;
    const auto known = std::find_if(rule.members.begin(), rule.members.end(),
                                    [&name = name](const MemberRule& member) { return name == member.name; });
    if (known == rule.members.end()) return "unknown member " + Quoted(name) + where;
    if (const char* expected = Mismatch(value, known->type))
      return Quoted(name) + where + " must be " + expected;
  }
  for (const auto& member : rule.members) {
    if (member.required && !line.contains(member.name)) return Quoted(member.name) + where + " is missing";
  }
  return {};
}

/// The library's message without its own bracketed code.
std::string ParseErrorText(const Json::parse_error& failure) {
  const std::string text = failure.what();
  const auto code = text.find("] ");
  return "the line is not JSON: " + (code == std::string::npos ? text : text.substr(code + 2));
}

}  // namespace

std::optional<Command> ParseCommand(std::string_view line, std::string& error) {
  if (IsTooDeep(line)) {
    error = "the line is nested deeper than " + std::to_string(kMaximumDepth) + " levels";
    return std::nullopt;
  }
  Json members;
  try {
    members = Json::parse(line);
  } catch (const Json::parse_error& failure) {
    error = ParseErrorText(failure);
    return std::nullopt;
  }
  const auto found = members.is_object() ? members.find("do") : members.end();
  if (!members.is_object()) {
    error = "the line is not a JSON object";
  } else if (found == members.end()) {
    error = "\"do\" is missing";
  } else if (!found->is_string()) {
    error = "\"do\" must be a text";
  }
  if (!error.empty()) return std::nullopt;

  const auto name = found->get<std::string>();
  const auto& table = CommandTable();
  const auto rule = std::find_if(table.begin(), table.end(),
                                 [&](const CommandRule& candidate) { return name == candidate.name; });
  error = rule == table.end() ? "unknown command " + Quoted(name) : CheckMembers(members, *rule);
  if (!error.empty()) return std::nullopt;
  return Command{name, std::move(members)};
}

Json ErrorAnswer(const std::string& error) {
  return Json{{"ok", false}, {"error", error}};
}

std::string ToLine(const Json& answer) {
  return answer.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace qv::devhost
