#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "translation/translate_request.h"

namespace qv {

/// The page's wish to have one short text translated, outside of any run.
struct QuickTranslateRequest {
  /// Given back in the answer; the page matches answers by it.
  std::wstring requestId;
  std::wstring text;
  std::wstring sourceLang;
  std::wstring targetLang;
  /// The page's own token; empty when it sent none.
  std::wstring token;
  std::wstring instruction;
};

/// Reads a "quickTranslate" message: from "auto" to "zh-CN" where a language is absent or empty.
[[nodiscard]] QuickTranslateRequest ParseQuickTranslate(std::wstring_view message);

/// The request to the service: one text without glossary or run.
[[nodiscard]] TranslateRequest BuildQuickRequest(const QuickTranslateRequest& request);

/// What the page is told.
struct QuickTranslateAnswer {
  bool ok = false;
  /// Empty unless ok.
  std::wstring translation;
  /// As the user reads it; empty when ok.
  std::wstring error;
};

/// The answer for the page out of the service's answer to a request of one text.
[[nodiscard]] QuickTranslateAnswer QuickAnswerOf(const TranslateResult& result);

[[nodiscard]] std::wstring QuickTranslateScript(std::wstring_view requestId,
                                                const QuickTranslateAnswer& answer);

/// The log lines around a request. `nativeTokenLength` is that of the token that the program holds.
[[nodiscard]] std::wstring QuickBeginLine(const QuickTranslateRequest& request,
                                          std::size_t nativeTokenLength);
[[nodiscard]] std::wstring QuickEndLine(std::wstring_view requestId, const QuickTranslateAnswer& answer);

}  // namespace qv
