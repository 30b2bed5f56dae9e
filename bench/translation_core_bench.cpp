// Times the translation core: forming batches for a large workbook, and one full batch's request and answer.
// Each value is the median of several runs.

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "measure.h"
#include "translation/batch_former.h"
#include "translation/translate_request.h"

namespace {

constexpr int kRuns = 9;
constexpr std::size_t kSmallWorkbook = 20000;
constexpr std::size_t kLargeWorkbook = 200000;
constexpr std::size_t kFullBatch = 20;
/// One request is too short to be timed alone.
constexpr int kRequestsPerRun = 1000;

/// Keeps the compiler from dropping work whose result nobody reads.
volatile std::size_t sink;

double MedianMs(const std::function<std::size_t()>& work) {
  std::vector<double> times;
  for (int run = 0; run < kRuns; ++run)
    times.push_back(qv::bench::Milliseconds([&] { sink = work(); }));
  return qv::bench::Median(std::move(times));
}

/// Texts of cell length, every twentieth a long one, every fiftieth blank.
std::vector<std::wstring> MakeTexts(std::size_t count) {
  std::vector<std::wstring> texts;
  texts.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (i % 50 == 49) {
      texts.emplace_back(L" ");
    } else {
      texts.push_back(
          qv::Concat(L"Quarterly revenue of region ", i, std::wstring(i % 20 == 0 ? 600 : i % 30, L'x')));
    }
  }
  return texts;
}

double BatchFormingMs(std::size_t count) {
  const std::vector<std::wstring> texts = MakeTexts(count);
  return MedianMs([&] {
    qv::BatchFormer former(texts);
    std::size_t batches = 0;
    while (former.Next())
      ++batches;
    return batches;
  });
}

qv::TranslateRequest FullRequest() {
  qv::TranslateRequest request;
  request.texts = MakeTexts(kFullBatch);
  for (std::size_t i = 0; i < kFullBatch; ++i)
    request.unitIds.push_back(qv::Concat(L"R", i + 1, L"C1"));
  request.sourceLang = L"en";
  request.targetLang = L"es";
  request.usageKind = L"translate_full";
  request.runId = 1;
  request.batchSeq = 1;
  return request;
}

double RequestUs() {
  const qv::TranslateRequest request = FullRequest();
  return MedianMs([&] {
    std::size_t bytes = 0;
    for (int i = 0; i < kRequestsPerRun; ++i)
      bytes += qv::ToUtf8(qv::BuildTranslateBody(request, L"{\"installId\":\"x\"}")).size();
    return bytes;
  });
}

double AnswerUs() {
  const qv::TranslateRequest request = FullRequest();
  const std::string body =
      qv::ToUtf8(qv::Concat(L"{\"translations\":", qv::JsonQuotedArray(request.texts), L",\"unitIds\":",
                            qv::JsonQuotedArray(request.unitIds), L"}"));
  return MedianMs([&] {
    std::size_t translations = 0;
    for (int i = 0; i < kRequestsPerRun; ++i)
      translations +=
          qv::ParseTranslateResponse({200, qv::FromUtf8(body), {}}, kFullBatch).translations.size();
    return translations;
  });
}

}  // namespace

int main() {
  using qv::bench::Row;
  const double small = BatchFormingMs(kSmallWorkbook);
  const double large = BatchFormingMs(kLargeWorkbook);
  Row("form batches, 20 000 units", small, "ms");
  Row("form batches, 200 000 units", large, "ms");
  Row("form batches, growth for 10 times the units", large / small, "times");
  // Milliseconds for a thousand requests are microseconds for one.
  Row("build a 20-segment request", RequestUs(), "us");
  Row("parse a 20-segment answer", AnswerUs(), "us");
  qv::bench::End();
  return 0;
}
