#include "translation/batch_translator.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "translation/error_codes.h"
#include "translation/placeholders.h"

namespace qv {
namespace {

/// Failures that another attempt cannot mend.
bool IsFatal(const TranslateResult& result) {
  constexpr std::array kFatal = {kCodeInsufficientCredits, kCodeUnauthorized, kCodeCancelled};
  return std::ranges::find(kFatal, std::wstring_view(result.code)) != kFatal.end();
}

/// The part of a request that holds the segments [begin, end).
TranslateRequest Slice(const TranslateRequest& request, std::size_t begin, std::size_t end) {
  TranslateRequest part = WithoutSegments(request);
  const auto cut = [begin, end](const std::vector<std::wstring>& from, std::vector<std::wstring>& to) {
    const std::span<const std::wstring> slice = std::span(from).subspan(begin, end - begin);
    to.assign(slice.begin(), slice.end());
  };
  cut(request.texts, part.texts);
  if (!request.unitIds.empty()) cut(request.unitIds, part.unitIds);
  return part;
}

/// How a batch's segments map to what is sent: each distinct text that the cache does not know, once.
struct Submission {
  TranslateRequest request;
  /// For each logical segment its place among the submitted ones; unused for a cache hit.
  std::vector<std::size_t> places;
  /// One entry a logical segment; filled for cache hits.
  std::vector<std::wstring> translations;
  std::vector<bool> cached;
};

Submission Reduce(const TranslateRequest& request, const ShortTextCache& cache, BatchFigures& figures) {
  Submission submission;
  submission.request = WithoutSegments(request);
  const std::size_t count = request.texts.size();
  submission.places.resize(count);
  submission.translations.resize(count);
  submission.cached.resize(count);
  std::unordered_map<std::wstring_view, std::size_t> firstPlace;
  for (std::size_t i = 0; i < count; ++i) {
    const std::wstring& text = request.texts[i];
    if (const std::wstring* known = cache.Find(text)) {
      submission.translations[i] = *known;
      submission.cached[i] = true;
      ++figures.cacheHits;
      continue;
    }
    const auto [entry, isNew] = firstPlace.try_emplace(text, submission.request.texts.size());
    submission.places[i] = entry->second;
    if (!isNew) {
      ++figures.dedupHits;
      continue;
    }
    submission.request.texts.push_back(text);
    if (!request.unitIds.empty()) submission.request.unitIds.push_back(request.unitIds[i]);
  }
  figures.logicalSegs = count;
  figures.submittedSegs = submission.request.texts.size();
  return submission;
}

}  // namespace

void BatchFigures::Add(const BatchFigures& other) {
  logicalSegs += other.logicalSegs;
  submittedSegs += other.submittedSegs;
  cacheHits += other.cacheHits;
  dedupHits += other.dedupHits;
}

TranslateResult BatchTranslator::TranslateBatch(const TranslateRequest& request, BatchFigures& figures) {
  figures = {};
  Submission submission = Reduce(request, cache_, figures);
  TranslateResult sent;
  if (!submission.request.texts.empty()) {
    sent = SendWithRetry(submission.request);
    if (!sent.ok) return sent;
  }
  if (sent.translations.size() != submission.request.texts.size()) {
    return TranslateResult::Failure(L"", L"Internal short-text cache result mismatch");
  }
  for (std::size_t i = 0; i < request.texts.size(); ++i) {
    if (submission.cached[i]) continue;
    submission.translations[i] = sent.translations[submission.places[i]];
    cache_.Store(request.texts[i], submission.translations[i]);
  }
  TranslateResult result;
  result.ok = true;
  result.translations = std::move(submission.translations);
  return result;
}

TranslateResult BatchTranslator::SendWithRetry(const TranslateRequest& request) {
  TranslateResult first = SendVerified(request);
  if (first.ok || IsFatal(first)) return first;
  TranslateResult second = SendVerified(request);
  if (second.ok || IsFatal(second)) return second;
  // The first error says most about what is wrong.
  return request.texts.size() > 1 ? SendHalves(request) : first;
}

TranslateResult BatchTranslator::SendHalves(const TranslateRequest& request) {
  const std::size_t middle = request.texts.size() / 2;
  TranslateResult left = SendWithRetry(Slice(request, 0, middle));
  if (!left.ok) return left;
  TranslateResult right = SendWithRetry(Slice(request, middle, request.texts.size()));
  if (!right.ok) return right;
  std::ranges::move(right.translations, std::back_inserter(left.translations));
  if (left.translations.size() != request.texts.size()) {
    return TranslateResult::Failure(L"", L"Internal batch merge error");
  }
  left.unitIds.clear();
  return left;
}

TranslateResult BatchTranslator::SendVerified(const TranslateRequest& request) {
  TranslateResult result = transport_.Send(request);
  // A wrong number of translations is told by whoever joins them.
  if (!result.ok || result.translations.size() != request.texts.size()) return result;
  const TranslateResult verified =
      VerifyPlaceholders(request.texts, result.translations, flags_, [&](const std::wstring& text) {
        TranslateRequest single = WithoutSegments(request);
        single.texts.push_back(text);
        return transport_.Send(single);
      });
  return verified.ok ? result : verified;
}

}  // namespace qv
