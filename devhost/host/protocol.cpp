#include "host/protocol.h"

#include <algorithm>
#include <span>
#include <vector>

namespace qv::devhost {
namespace {

enum class MemberType {
  kText,
  kObject,
  kFlag,
  kPane,
  kTimeout,
  kPoints,
  kRow,
  kSheetRow,
  kWindow,
  kWindowOrFlag
};

struct MemberRule {
  const char* name;
  MemberType type;
  bool required = false;
};

/// Where a command can run: only in the host's own message loop, or also while a box is open.
enum class Place { kHost, kAlsoInBoxes };

struct CommandRule {
  const char* name;
  Place place;
  std::vector<MemberRule> members;
};

const std::vector<CommandRule>& CommandTable() {
  using enum MemberType;
  using enum Place;
  static const std::vector<CommandRule> kTable = {
      // The page.
      {"post",
       kAlsoInBoxes,
       {{"message", kObject, true}, {"pane", kPane}, {"source", kText}, {"asJson", kFlag}}},
      {"wait", kAlsoInBoxes, {{"script", kText, true}, {"timeoutMs", kTimeout}}},
      {"scripts", kAlsoInBoxes, {}},
      {"script-result", kAlsoInBoxes, {{"script", kText, true}, {"result", kText, true}}},
      {"page",
       kAlsoInBoxes,
       {{"eval", kText, true}, {"pane", kPane}, {"surface", kText}, {"timeoutMs", kTimeout}}},
      {"click", kAlsoInBoxes, {{"selector", kText, true}, {"pane", kPane}, {"surface", kText}}},
      {"type", kAlsoInBoxes, {{"text", kText, true}, {"pane", kPane}, {"surface", kText}}},
      {"kill-browser", kAlsoInBoxes, {}},
      {"crash-page", kAlsoInBoxes, {{"pane", kPane}, {"surface", kText}}},
      // The spreadsheet.
      {"cell", kHost, {{"sheet", kText}, {"address", kText, true}}},
      {"select", kHost, {{"sheet", kText}, {"address", kText, true}}},
      {"set-cell", kHost, {{"sheet", kText}, {"address", kText, true}, {"text", kText, true}}},
      {"insert-rows", kHost, {{"sheet", kText}, {"row", kSheetRow, true}, {"count", kSheetRow}}},
      {"sheet", kHost, {{"activate", kText}, {"rename", kText}, {"to", kText}, {"delete", kText}}},
      {"close-workbook", kHost, {{"name", kText}}},
      {"protect", kHost, {{"sheet", kText}, {"on", kFlag, true}}},
      {"save", kHost, {{"path", kText, true}}},
      {"shot", kHost, {{"path", kText, true}}},
      {"counters", kHost, {}},
      {"reset-counters", kHost, {}},
      {"fault", kHost, {{"fault", kObject, true}}},
      // The host's windows.
      {"ribbon", kHost, {}},
      {"press", kHost, {{"button", kText, true}}},
      {"window", kHost, {{"open", kText}, {"new", kFlag}, {"close", kWindowOrFlag}, {"activate", kWindow}}},
      {"panes", kHost, {}},
      {"open-pane", kHost, {}},
      {"close-pane", kHost, {{"pane", kPane, true}}},
      {"pane-width", kHost, {{"pt", kPoints, true}, {"pane", kPane}}},
      {"pane-dock", kHost, {{"position", kText, true}, {"pane", kPane}}},
      {"messagebox", kAlsoInBoxes, {{"timeoutMs", kTimeout}}},
      {"answer", kAlsoInBoxes, {{"button", kText, true}}},
      {"choose", kAlsoInBoxes, {{"row", kRow, true}}},
      // Diagnosis.
      {"log", kAlsoInBoxes, {}},
      {"calls", kAlsoInBoxes, {}},
      {"screenshot", kAlsoInBoxes, {{"path", kText, true}}},
      {"sync", kHost, {}},
      {"clipboard", kAlsoInBoxes, {{"text", kText}}},
      {"quit", kHost, {}},
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
    case MemberType::kPoints:
      return IsWholeNumber(value, 1, 10'000) ? nullptr : "a whole number of points from 1 to 10000";
    case MemberType::kRow:
      return IsWholeNumber(value, 1, 10'000) ? nullptr : "a row from 1 to 10000";
    case MemberType::kSheetRow:
      return IsWholeNumber(value, 1, 1'048'576) ? nullptr : "a whole number from 1 to 1048576";
    case MemberType::kWindow:
      return IsWholeNumber(value, 1, 1'000'000) ? nullptr : "a window number";
    case MemberType::kWindowOrFlag:
      return value == true || IsWholeNumber(value, 1, 1'000'000) ? nullptr : "a window number or true";
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
  return Command{name, std::move(members), rule->place == Place::kAlsoInBoxes};
}

Json ErrorAnswer(const std::string& error) {
  return Json{{"ok", false}, {"error", error}};
}

std::string ToLine(const Json& answer) {
  return answer.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace qv::devhost
