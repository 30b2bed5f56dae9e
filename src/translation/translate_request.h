#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// A pair of terms that the translation must respect.
struct GlossaryEntry {
  std::wstring source;
  std::wstring target;
  /// May be empty.
  std::wstring note;
};

/// What a run's glossaries and instructions add to each of its batches.
struct Terminology {
  std::vector<GlossaryEntry> glossary;
  std::wstring instruction;
};

/// One batch on its way to the service. Empty members are left out of the direct request.
struct TranslateRequest {
  std::vector<std::wstring> texts;
  /// Ids of the texts' units, or empty.
  std::vector<std::wstring> unitIds;
  /// As chosen in the panel, sent as given.
  std::wstring sourceLang;
  std::wstring targetLang;
  /// "translate_full", "translate_selection" or "translate_quick".
  std::wstring usageKind;
  std::wstring clientProduct;
  std::vector<GlossaryEntry> glossary;
  std::wstring instruction;
  std::wstring clientTraceId;
  /// 0 when the request belongs to no run.
  std::uint64_t runId = 0;
  /// 1-based order within the run, 0 for none.
  std::uint32_t batchSeq = 0;
};

/// What came back: one translation a text, or a code (may be empty) and a message.
struct TranslateResult {
  bool ok = false;
  std::vector<std::wstring> translations;
  /// As echoed by the service; empty unless there is one for each translation.
  std::vector<std::wstring> unitIds;
  std::wstring code;
  std::wstring message;

  [[nodiscard]] static TranslateResult Failure(std::wstring_view code, std::wstring_view message);
  [[nodiscard]] static TranslateResult Cancelled();
};

/// Carries one request to the service and waits for the answer. Worker thread.
class Transport {
 public:
  virtual ~Transport() = default;
  [[nodiscard]] virtual TranslateResult Send(const TranslateRequest& request) = 0;
};

/// A copy of everything but the texts and unit ids, for requests that carry a part of the batch.
[[nodiscard]] TranslateRequest WithoutSegments(const TranslateRequest& request);

/// The glossary as a JSON array.
[[nodiscard]] std::wstring BuildGlossaryArray(const std::vector<GlossaryEntry>& glossary);

/// Body of the direct request. `clientContext` is a JSON object.
[[nodiscard]] std::wstring BuildTranslateBody(const TranslateRequest& request,
                                              std::wstring_view clientContext);

/// What the transport brought back from the service.
struct ServiceAnswer {
  /// 0 when none was received.
  int status = 0;
  /// Empty unless a whole answer was received.
  std::wstring body;
  /// Why nothing was received.
  std::wstring error;
};

/// Reads the service's answer to a request of `textCount` texts. A body decides before the status does, so
/// that the service's own words win.
[[nodiscard]] TranslateResult ParseTranslateResponse(const ServiceAnswer& answer, std::size_t textCount);

}  // namespace qv
