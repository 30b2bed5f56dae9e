#include "translation/translate_request.h"

#include <utility>

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "translation/error_codes.h"

namespace qv {
namespace {

constexpr int kStatusUnauthorized = 401;
constexpr int kStatusPaymentRequired = 402;
constexpr std::wstring_view kLoginExpired = L"登录已失效，请重新登录";

/// `,"name":"value"`, or nothing for an empty value.
std::wstring OptionalMember(std::wstring_view name, std::wstring_view value) {
  return value.empty() ? std::wstring() : Concat(L",\"", name, L"\":", JsonQuote(value));
}

/// The run id is a quoted string here: the service keeps it as text.
std::wstring TraceMember(const TranslateRequest& request) {
  std::wstring members;
  const auto add = [&members](const std::wstring& member) {
    if (!members.empty()) members += L',';
    members += member;
  };
  if (!request.clientTraceId.empty()) add(Concat(L"\"clientTraceId\":", JsonQuote(request.clientTraceId)));
  if (request.runId != 0) add(Concat(L"\"runId\":\"", request.runId, L'"'));
  if (request.batchSeq != 0) add(Concat(L"\"batchSeq\":", request.batchSeq));
  return members.empty() ? members : Concat(L",\"trace\":{", members, L'}');
}

std::wstring FirstPresent(std::wstring_view json, std::wstring_view key, std::wstring_view otherKey) {
  std::wstring value = JsonGetString(json, key);
  return value.empty() ? JsonGetString(json, otherKey) : value;
}

std::wstring_view CodeOfUncodedFailure(int status, std::wstring_view message) {
  if (status == kStatusUnauthorized) return kCodeUnauthorized;
  if (status == kStatusPaymentRequired) return kCodeInsufficientCredits;
  const bool credits = Contains(message, kCodeInsufficientCredits) || Contains(message, kCreditsPhrase);
  return credits ? kCodeInsufficientCredits : std::wstring_view();
}

TranslateResult FailureFromBody(const ServiceAnswer& answer) {
  std::wstring message = FirstPresent(answer.body, L"message", L"error");
  if (message.empty()) message = L"Empty translation response";
  const std::wstring code = FirstPresent(answer.body, L"code", L"error");
  return TranslateResult::Failure(code.empty() ? CodeOfUncodedFailure(answer.status, message) : code,
                                  message);
}

TranslateResult FailureFromStatus(const ServiceAnswer& answer) {
  if (answer.status == kStatusUnauthorized) {
    return TranslateResult::Failure(kCodeUnauthorized, kLoginExpired);
  }
  if (answer.status == kStatusPaymentRequired) {
    const bool bare = answer.error.empty() || answer.error == kCodeInsufficientCredits;
    return TranslateResult::Failure(kCodeInsufficientCredits, bare ? kCreditsMessage : answer.error);
  }
  return TranslateResult::Failure(kCodeNetworkError,
                                  answer.error.empty() ? L"HTTP request failed" : answer.error);
}

}  // namespace

TranslateResult TranslateResult::Failure(std::wstring_view code, std::wstring_view message) {
  TranslateResult result;
  result.code = code;
  result.message = message;
  return result;
}

TranslateResult TranslateResult::Cancelled() {
  return Failure(kCodeCancelled, kMessageCancelled);
}

TranslateRequest WithoutSegments(const TranslateRequest& request) {
  TranslateRequest copy;
  copy.sourceLang = request.sourceLang;
  copy.targetLang = request.targetLang;
  copy.usageKind = request.usageKind;
  copy.clientProduct = request.clientProduct;
  copy.glossary = request.glossary;
  copy.instruction = request.instruction;
  copy.clientTraceId = request.clientTraceId;
  copy.runId = request.runId;
  copy.batchSeq = request.batchSeq;
  return copy;
}

std::wstring BuildGlossaryArray(const std::vector<GlossaryEntry>& glossary) {
  std::wstring out = L"[";
  for (const GlossaryEntry& entry : glossary) {
    if (out.size() > 1) out += L',';
    out += Concat(L"{\"source\":", JsonQuote(entry.source), L",\"target\":", JsonQuote(entry.target),
                  OptionalMember(L"note", entry.note), L'}');
  }
  out += L']';
  return out;
}

std::wstring BuildTranslateBody(const TranslateRequest& request, std::wstring_view clientContext) {
  std::wstring body = Concat(L"{\"texts\":", JsonQuotedArray(request.texts));
  if (!request.unitIds.empty()) body += Concat(L",\"unitIds\":", JsonQuotedArray(request.unitIds));
  body += Concat(L",\"sourceLang\":", JsonQuote(request.sourceLang), L",\"targetLang\":",
                 JsonQuote(request.targetLang), OptionalMember(L"usageKind", request.usageKind),
                 OptionalMember(L"clientProduct", request.clientProduct));
  if (!request.glossary.empty()) body += Concat(L",\"glossary\":", BuildGlossaryArray(request.glossary));
  body += Concat(OptionalMember(L"instruction", request.instruction), TraceMember(request),
                 L",\"clientContext\":", clientContext, L'}');
  return body;
}

TranslateResult ParseTranslateResponse(const ServiceAnswer& answer, std::size_t textCount) {
  if (answer.body.empty()) return FailureFromStatus(answer);
  TranslateResult result;
  result.translations =
      JsonGetStringArray(answer.body, L"translations").value_or(std::vector<std::wstring>());
  if (result.translations.empty()) return FailureFromBody(answer);
  if (result.translations.size() != textCount) {
    return TranslateResult::Failure(L"", L"Translation count mismatch");
  }
  result.ok = true;
  result.unitIds = JsonGetStringArray(answer.body, L"unitIds").value_or(std::vector<std::wstring>());
  if (result.unitIds.size() != result.translations.size()) result.unitIds.clear();
  return result;
}

}  // namespace qv
