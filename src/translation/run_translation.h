#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "translation/run_flags.h"
#include "translation/translate_request.h"

namespace qv {

/// What a run's worker translates; copies, so that nothing of the host is touched by it.
struct RunTexts {
  std::vector<std::wstring> texts;
  /// One a text.
  std::vector<std::wstring> unitIds;
};

/// One unit of a finished batch.
struct TranslatedUnit {
  /// 0-based index among the run's units.
  std::size_t index = 0;
  /// The text held nothing to translate and stays as it is.
  bool skipped = false;
  std::wstring translation;
};

/// In the order of the units.
using TranslatedBatch = std::vector<TranslatedUnit>;

/// How the translating part of a run ended: ok, or a code (may be empty) and a message.
struct RunEnd {
  bool ok = false;
  std::wstring code;
  std::wstring message;
};

/// Takes what a run's worker produces. Worker thread.
class RunSink {
 public:
  virtual ~RunSink() = default;
  virtual void Deliver(TranslatedBatch batch) = 0;
  /// One event of the translate trace.
  virtual void Trace(std::string_view event, const std::wstring& detail) = 0;
};

/// Asked once, before the first batch; may wait.
using TerminologySource = std::function<Terminology(const std::vector<std::wstring>& texts)>;

/// Translates all texts batch by batch and hands each finished batch over. `head` carries what all batches
/// share.
[[nodiscard]] RunEnd TranslateRun(const RunTexts& texts, TranslateRequest head,
                                  const TerminologySource& terminology, Transport& transport,
                                  const RunFlags& flags, RunSink& sink);

}  // namespace qv
