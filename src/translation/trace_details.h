#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "translation/batch_translator.h"
#include "translation/translate_request.h"

namespace qv {

// Details of the translate trace's events, in the order that log readers expect.

/// "cpp.start.recv". `length` is the received message's; `message` has its tokens blanked already, and its
/// first 500 units are quoted.
[[nodiscard]] std::wstring StartReceivedDetail(bool hasField, std::size_t length,
                                               std::wstring_view clientTraceId, std::wstring_view message);

/// "cpp.bridge.transport". Only the token's length is told.
[[nodiscard]] std::wstring TransportChoiceDetail(bool viaPanel, bool hasField, std::size_t tokenLength);

/// "cpp.http.translate".
[[nodiscard]] std::wstring HttpTranslateDetail(const TranslateRequest& request, std::int64_t httpMs,
                                               const TranslateResult& result);

/// "cpp.batch.cache" for one batch.
[[nodiscard]] std::wstring BatchCacheDetail(const TranslateRequest& request, const BatchFigures& figures);

/// "cpp.run.cache": the sums over a run's batches.
[[nodiscard]] std::wstring RunCacheDetail(std::wstring_view clientTraceId, std::uint64_t runId,
                                          std::uint32_t batches, const BatchFigures& sums);

/// "cpp.bridge.request.posted".
[[nodiscard]] std::wstring BridgePostedDetail(const TranslateRequest& request, std::wstring_view requestId);

/// "cpp.bridge.timeout".
[[nodiscard]] std::wstring BridgeTimeoutDetail(std::wstring_view requestId, std::uint64_t runId);

/// "cpp.bridge.result.received".
[[nodiscard]] std::wstring BridgeResultDetail(std::wstring_view requestId, const TranslateResult& result);

/// "cpp.bridge.worker.unblocked".
[[nodiscard]] std::wstring BridgeUnblockedDetail(std::wstring_view requestId, std::uint64_t runId,
                                                 const TranslateResult& result);

/// "cpp.term.bridge.request.posted".
[[nodiscard]] std::wstring TermPostedDetail(std::wstring_view requestId, std::size_t glossaryIds,
                                            std::size_t corpusTexts);

/// "cpp.term.bridge.result.received". `resultLength` in UTF-16 units.
[[nodiscard]] std::wstring TermResultDetail(std::wstring_view requestId, std::size_t resultLength);

/// "cpp.term.bridge.failed".
[[nodiscard]] std::wstring TermFailedDetail(std::wstring_view requestId, bool ok, std::wstring_view code);

}  // namespace qv
