#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>

#include "host/development_host.h"
#include "host/protocol.h"

namespace qv::devhost {

/// What commands share while the host runs.
struct CommandContext {
  DevelopmentHost& host;
  /// GetTickCount64 when the commands began.
  ULONGLONG started = GetTickCount64();
  /// 0-based index of the first page item that no "wait" has answered or passed over yet.
  std::uint64_t cursor = 0;
  /// Work that may open boxes with message loops of their own. It runs once the command is answered, before
  /// the next one.
  std::function<void()> afterwards;
};

/// A command under way that is answered later. `poll` is asked after every message; when the deadline
/// (GetTickCount64) has passed, `timedOut` gives the answer.
struct PendingAnswer {
  std::function<std::optional<Json>()> poll;
  ULONGLONG deadline;
  std::function<Json()> timedOut;
};

using Outcome = std::variant<Json, PendingAnswer>;
/// Carries a checked command out. Throws std::exception with its refusal, and has changed nothing then.
using CommandHandler = std::function<Outcome(CommandContext&, const Json& members)>;
using CommandHandlers = std::map<std::string, CommandHandler>;

/// The handlers of all commands but "quit", which is the runner's own.
[[nodiscard]] const CommandHandlers& AllCommands();

void AddPageCommands(CommandHandlers& handlers);
void AddSpreadsheetCommands(CommandHandlers& handlers);
void AddWindowCommands(CommandHandlers& handlers);
void AddPaneCommands(CommandHandlers& handlers);
void AddBoxCommands(CommandHandlers& handlers);
void AddDiagnosisCommands(CommandHandlers& handlers);

/// {"ok":true}
[[nodiscard]] Json OkAnswer();
/// An engine's object behind "ok".
[[nodiscard]] Json OkAnswer(const nlohmann::json& members);
/// A text member, empty when it is absent.
[[nodiscard]] std::wstring TextMember(const Json& members, const char* name);
/// The pane that the member names, by default the oldest open one. Throws std::runtime_error when there is
/// none.
[[nodiscard]] PaneList::Pane PaneFor(CommandContext& context, const Json& members);

}  // namespace qv::devhost
