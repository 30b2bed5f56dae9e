#include "translation/run_translation.h"

#include <algorithm>
#include <utility>

#include "foundation/text.h"
#include "translation/batch_former.h"
#include "translation/batch_translator.h"
#include "translation/trace_details.h"

namespace qv {
namespace {

RunEnd EndOf(const TranslateResult& result) {
  return {result.ok, result.code, result.message};
}

TranslateRequest RequestFor(const Batch& batch, const RunTexts& texts, const TranslateRequest& head) {
  TranslateRequest request = WithoutSegments(head);
  for (const std::size_t index : batch.segments) {
    request.texts.push_back(texts.texts[index]);
    request.unitIds.push_back(texts.unitIds[index]);
  }
  return request;
}

TranslatedBatch BatchInUnitOrder(const Batch& batch, std::vector<std::wstring> translations) {
  TranslatedBatch units;
  for (const std::size_t index : batch.blanks)
    units.push_back({index, true, {}});
  for (std::size_t i = 0; i < batch.segments.size(); ++i)
    units.push_back({batch.segments[i], false, std::move(translations[i])});
  std::ranges::sort(units, {}, &TranslatedUnit::index);
  return units;
}

TranslateResult Checked(TranslateResult result, std::size_t expected) {
  const std::size_t count = result.translations.size();
  if (!result.ok || count == expected) return result;
  return TranslateResult::Failure(
      L"", Concat(L"Translation batch size mismatch (", count, L" vs ", expected, L")"));
}

/// The walk over the texts with what it keeps between batches.
class RunWalk {
 public:
  RunWalk(const RunTexts& texts, TranslateRequest head, Transport& transport, const RunFlags& flags,
          RunSink& sink)
      : texts_(texts), head_(std::move(head)), translator_(transport, flags), flags_(flags), sink_(sink) {}

  RunEnd Run() {
    BatchFormer former(texts_.texts);
    // A pause holds before each batch.
    while (flags_.Pass()) {
      const std::optional<Batch> batch = former.Next();
      if (!batch) return {true, {}, {}};
      TranslateResult result = Translate(*batch);
      if (!result.ok) return EndOf(result);
      if (flags_.IsCancelled()) break;
      sink_.Deliver(BatchInUnitOrder(*batch, std::move(result.translations)));
    }
    return EndOf(TranslateResult::Cancelled());
  }

  void TraceFigures() const {
    sink_.Trace("cpp.run.cache", RunCacheDetail(head_.clientTraceId, head_.runId, head_.batchSeq, sums_));
  }

 private:
  TranslateResult Translate(const Batch& batch) {
    TranslateResult result;
    result.ok = true;
    if (batch.segments.empty()) return result;
    ++head_.batchSeq;
    const TranslateRequest request = RequestFor(batch, texts_, head_);
    BatchFigures figures;
    result = translator_.TranslateBatch(request, figures);
    sums_.Add(figures);
    sink_.Trace("cpp.batch.cache", BatchCacheDetail(request, figures));
    return Checked(std::move(result), batch.segments.size());
  }

  const RunTexts& texts_;
  TranslateRequest head_;
  BatchTranslator translator_;
  const RunFlags& flags_;
  RunSink& sink_;
  BatchFigures sums_;
};

}  // namespace

RunEnd TranslateRun(const RunTexts& texts, TranslateRequest head, const TerminologySource& terminology,
                    Transport& transport, const RunFlags& flags, RunSink& sink) {
  Terminology terms = terminology(texts.texts);
  head.glossary = std::move(terms.glossary);
  head.instruction = std::move(terms.instruction);
  RunWalk walk(texts, std::move(head), transport, flags, sink);
  RunEnd end = walk.Run();
  walk.TraceFigures();
  return end;
}

}  // namespace qv
