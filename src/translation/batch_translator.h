#pragma once

#include <cstddef>

#include "translation/run_flags.h"
#include "translation/short_text_cache.h"
#include "translation/translate_request.h"

namespace qv {

/// What became of a batch's segments.
struct BatchFigures {
  /// The batch's full size.
  std::size_t logicalSegs = 0;
  /// Segments sent to the service.
  std::size_t submittedSegs = 0;
  /// Segments answered by the short-text cache.
  std::size_t cacheHits = 0;
  /// Copies of another segment of the batch.
  std::size_t dedupHits = 0;

  void Add(const BatchFigures& other);
};

/// Translates batches: answers what it knows, sends the rest once, retries and splits what fails. One run, on
/// its worker.
class BatchTranslator {
 public:
  /// Both outlive the translator.
  BatchTranslator(Transport& transport, const RunFlags& flags) : transport_(transport), flags_(flags) {}

  /// One translation a text of the request, in order, or the failure. `figures` is filled in either case.
  [[nodiscard]] TranslateResult TranslateBatch(const TranslateRequest& request, BatchFigures& figures);

 private:
  [[nodiscard]] TranslateResult SendWithRetry(const TranslateRequest& request);
  [[nodiscard]] TranslateResult SendHalves(const TranslateRequest& request);
  [[nodiscard]] TranslateResult SendVerified(const TranslateRequest& request);

  Transport& transport_;
  const RunFlags& flags_;
  ShortTextCache cache_;
};

}  // namespace qv
