#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "translation/translate_request.h"

namespace qv {

/// The glossaries and the instruction that the page wants a run to follow.
struct TerminologyChoice {
  std::vector<std::wstring> glossaryIds;
  /// May be empty.
  std::wstring instructionId;

  [[nodiscard]] bool IsEmpty() const { return glossaryIds.empty() && instructionId.empty(); }
  bool operator==(const TerminologyChoice&) const = default;
};

/// Reads a start message. The user's own instruction goes before a preset one.
[[nodiscard]] TerminologyChoice ParseTerminologyChoice(std::wstring_view message);

/// The JSON message that asks the page for what the choice means for the texts.
[[nodiscard]] std::wstring TerminologyResolveRequestMessage(std::wstring_view requestId,
                                                            const TerminologyChoice& choice,
                                                            const std::vector<std::wstring>& corpus);

/// The page's answer: a result, or a code (may be empty) and a message.
struct TerminologyAnswer {
  bool ok = false;
  /// JSON text.
  std::wstring result;
  std::wstring code;
  std::wstring message;

  [[nodiscard]] static TerminologyAnswer Failure(std::wstring_view code, std::wstring_view message);
  [[nodiscard]] static TerminologyAnswer Cancelled();
  [[nodiscard]] static TerminologyAnswer TimedOut();
};

/// Reads a "terminologyResolveResult". Whatever has a code, or has no result, is a failure.
[[nodiscard]] TerminologyAnswer ParseTerminologyAnswer(std::wstring_view message);

/// The enabled entries and the instruction of a result; nothing when it is no JSON object.
[[nodiscard]] std::optional<Terminology> ParseResolvedTerminology(std::wstring_view result);

/// What a run's start needs of others.
struct TerminologyHelp {
  /// Asks the page; may wait.
  std::function<TerminologyAnswer(const TerminologyChoice&, const std::vector<std::wstring>& corpus)> resolve;
  /// Takes one log line with its line end.
  std::function<void(std::wstring_view line)> log;
};

/// What the choice adds to a run over these texts. A run goes on without it when it cannot be had.
[[nodiscard]] Terminology ApplyTerminologyForRun(const TerminologyChoice& choice, bool hasToken,
                                                 const std::vector<std::wstring>& texts,
                                                 const TerminologyHelp& help);

}  // namespace qv
