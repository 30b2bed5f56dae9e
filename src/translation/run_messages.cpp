#include "translation/run_messages.h"

#include <vector>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {

std::wstring TranslateBatchRequestMessage(std::wstring_view requestId, const TranslateRequest& request) {
  return Concat(L"{\"action\":\"translateBatchRequest\",\"requestId\":", JsonQuote(requestId), L",\"runId\":",
                request.runId, L",\"batchSeq\":", request.batchSeq, L",\"texts\":",
                JsonQuotedArray(request.texts), L",\"sourceLang\":", JsonQuote(request.sourceLang),
                L",\"targetLang\":", JsonQuote(request.targetLang), L",\"usageKind\":",
                JsonQuote(request.usageKind), L",\"clientProduct\":", JsonQuote(request.clientProduct),
                L",\"glossary\":", BuildGlossaryArray(request.glossary), L",\"instruction\":",
                JsonQuote(request.instruction), L",\"trace\":{\"clientTraceId\":",
                JsonQuote(request.clientTraceId), L",\"runId\":\"", request.runId, L"\"}}");
}

std::wstring TranslateAbortForRunMessage(std::uint64_t runId) {
  return Concat(L"{\"action\":\"translateAbortForRun\",\"runId\":", runId, L'}');
}

std::wstring SheetWriteBlockedMessage(std::wstring_view message) {
  return Concat(L"{\"action\":\"sheetWriteBlocked\",\"message\":", JsonQuote(message), L'}');
}

TranslateResult ParseTranslateBatchResult(std::wstring_view message) {
  TranslateResult result;
  result.ok = JsonGetBool(message, L"ok");
  if (result.ok) {
    result.translations = JsonGetStringArray(message, L"translations").value_or(std::vector<std::wstring>());
  } else {
    result.code = JsonGetString(message, L"code");
    result.message = JsonGetString(message, L"message");
  }
  return result;
}

}  // namespace qv
