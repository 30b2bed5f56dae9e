#include "translation/terminology.h"

#include <utility>

#include "foundation/json_parts.h"
#include "foundation/json_text.h"
#include "foundation/text.h"
#include "translation/error_codes.h"
#include "translation/glossary_entries.h"

namespace qv {
namespace {

constexpr std::wstring_view kResolveFailed = L"Terminology resolve failed";

}  // namespace

TerminologyChoice ParseTerminologyChoice(std::wstring_view message) {
  TerminologyChoice choice;
  choice.glossaryIds = JsonGetStringArray(message, L"glossaryIds").value_or(std::vector<std::wstring>());
  std::erase(choice.glossaryIds, L"");
  const JsonMembers members = JsonMembersOf(message).value_or(JsonMembers());
  // A page without a choice may also write null.
  for (const std::wstring_view name : {L"globalInstructionId", L"globalPresetId"}) {
    if (choice.instructionId.empty()) choice.instructionId = JsonStringOf(members, name).value_or(L"");
  }
  return choice;
}

std::wstring TerminologyResolveRequestMessage(std::wstring_view requestId, const TerminologyChoice& choice,
                                              const std::vector<std::wstring>& corpus) {
  return Concat(L"{\"action\":\"terminologyResolveRequest\",\"requestId\":", JsonQuote(requestId),
                L",\"glossaryIds\":", JsonQuotedArray(choice.glossaryIds), L",\"instructionId\":",
                JsonQuote(choice.instructionId), L",\"corpusTexts\":", JsonQuotedArray(corpus), L'}');
}

TerminologyAnswer TerminologyAnswer::Failure(std::wstring_view code, std::wstring_view message) {
  return {false, {}, std::wstring(code), std::wstring(message)};
}

TerminologyAnswer TerminologyAnswer::Cancelled() {
  return Failure(kCodeCancelled, kResolveFailed);
}

TerminologyAnswer TerminologyAnswer::TimedOut() {
  return Failure(L"request_timeout", kResolveFailed);
}

TerminologyAnswer ParseTerminologyAnswer(std::wstring_view message) {
  const JsonMembers members = JsonMembersOf(message).value_or(JsonMembers());
  TerminologyAnswer answer;
  answer.result = JsonStringOf(members, L"result").value_or(L"");
  answer.code = JsonStringOf(members, L"code").value_or(L"");
  answer.ok = answer.code.empty() && !answer.result.empty();
  return answer.ok ? answer : TerminologyAnswer::Failure(answer.code, kResolveFailed);
}

std::optional<Terminology> ParseResolvedTerminology(std::wstring_view result) {
  const std::optional<JsonMembers> members = JsonMembersOf(result);
  if (!members) return std::nullopt;
  Terminology terms;
  auto entries = ParseEntries(JsonValueOf(*members, L"entries"));
  if (entries) {
    for (StoredEntry& entry : *entries) {
      if (entry.enabled && !entry.terms.source.empty()) terms.glossary.push_back(std::move(entry.terms));
    }
  }
  terms.instruction = JsonStringOf(*members, L"instruction").value_or(L"");
  return terms;
}

Terminology ApplyTerminologyForRun(const TerminologyChoice& choice, bool hasToken,
                                   const std::vector<std::wstring>& texts, const TerminologyHelp& help) {
  if (!hasToken) {
    help.log(L"ApplyTerminologyForRun: no accessToken, skip cloud terminology\r\n");
    return {};
  }
  if (choice.IsEmpty()) {
    help.log(L"ApplyTerminologyForRun: no glossary/instruction, skip cloud terminology\r\n");
    return {};
  }
  const std::vector<std::wstring> none;
  const bool hasGlossary = !choice.glossaryIds.empty();
  help.log(hasGlossary ? Concat(L"ApplyTerminologyForRun: resolve glossaryIds=", choice.glossaryIds.size(),
                                L" corpusTexts=", texts.size(), L"\r\n")
                       : L"ApplyTerminologyForRun: instruction only, resolve without corpus\r\n");
  const TerminologyAnswer answer = help.resolve(choice, hasGlossary ? texts : none);
  std::optional<Terminology> terms = answer.ok ? ParseResolvedTerminology(answer.result) : std::nullopt;
  if (terms) return std::move(*terms);
  help.log(L"ApplyTerminologyForRun: bridge resolve failed, fallback empty\r\n");
  return {};
}

}  // namespace qv
