#include "translation/trace_details.h"

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::size_t kQuotedMessageLength = 500;

std::wstring RunPrefix(const TranslateRequest& request) {
  return Concat(L"clientTraceId=", request.clientTraceId, L" runId=", request.runId);
}

std::wstring FiguresText(const BatchFigures& figures) {
  return Concat(L" logicalSegs=", figures.logicalSegs, L" submittedSegs=", figures.submittedSegs,
                L" cacheHits=", figures.cacheHits, L" dedupHits=", figures.dedupHits);
}

std::size_t CountCharacters(const TranslateRequest& request) {
  std::size_t characters = 0;
  for (const std::wstring& text : request.texts)
    characters += text.size();
  return characters;
}

}  // namespace

std::wstring StartReceivedDetail(bool hasField, std::size_t length, std::wstring_view clientTraceId,
                                 std::wstring_view message) {
  return Concat(L"hasField=", hasField, L" len=", length, L" clientTraceId=", clientTraceId, L" json=",
                message.substr(0, kQuotedMessageLength));
}

std::wstring TransportChoiceDetail(bool viaPanel, bool hasField, std::size_t tokenLength) {
  return Concat(L"viaJs=", viaPanel, L" hasField=", hasField, L" tokenLen=", tokenLength);
}

std::wstring HttpTranslateDetail(const TranslateRequest& request, std::int64_t httpMs,
                                 const TranslateResult& result) {
  return Concat(RunPrefix(request), L" batchSeq=", request.batchSeq, L" segs=", request.texts.size(),
                L" chars=", CountCharacters(request), L" httpMs=", httpMs, L" ok=", result.ok, L" code=",
                result.code);
}

std::wstring BatchCacheDetail(const TranslateRequest& request, const BatchFigures& figures) {
  return Concat(RunPrefix(request), L" batchSeq=", request.batchSeq, FiguresText(figures));
}

std::wstring RunCacheDetail(std::wstring_view clientTraceId, std::uint64_t runId, std::uint32_t batches,
                            const BatchFigures& sums) {
  return Concat(L"clientTraceId=", clientTraceId, L" runId=", runId, L" batches=", batches,
                FiguresText(sums));
}

std::wstring BridgePostedDetail(const TranslateRequest& request, std::wstring_view requestId) {
  return Concat(RunPrefix(request), L" requestId=", requestId, L" batchSeq=", request.batchSeq, L" segs=",
                request.texts.size());
}

std::wstring BridgeTimeoutDetail(std::wstring_view requestId, std::uint64_t runId) {
  return Concat(L"requestId=", requestId, L" runId=", runId);
}

std::wstring BridgeResultDetail(std::wstring_view requestId, const TranslateResult& result) {
  return Concat(L"requestId=", requestId, L" ok=", result.ok, L" code=", result.code, L" segs=",
                result.translations.size());
}

std::wstring BridgeUnblockedDetail(std::wstring_view requestId, std::uint64_t runId,
                                   const TranslateResult& result) {
  return Concat(L"requestId=", requestId, L" runId=", runId, L" ok=", result.ok, L" code=", result.code);
}

std::wstring TermPostedDetail(std::wstring_view requestId, std::size_t glossaryIds, std::size_t corpusTexts) {
  return Concat(L"requestId=", requestId, L" glossaryIds=", glossaryIds, L" corpusTexts=", corpusTexts);
}

std::wstring TermResultDetail(std::wstring_view requestId, std::size_t resultLength) {
  return Concat(L"requestId=", requestId, L" resultLen=", resultLength);
}

std::wstring TermFailedDetail(std::wstring_view requestId, bool ok, std::wstring_view code) {
  return Concat(L"requestId=", requestId, L" ok=", ok, L" code=", code);
}

}  // namespace qv
